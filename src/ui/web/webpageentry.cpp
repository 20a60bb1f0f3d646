#include "webpageentry.h"

#include "webbrowserwidget.h"

WebPage *zanmirMakeWebPage(QWidget *parent)
{
    return new WebBrowserWidget(parent);
}
