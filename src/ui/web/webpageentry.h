#ifndef WEBPAGEENTRY_H
#define WEBPAGEENTRY_H

#include <QtGlobal>

class QWidget;
class WebPage;

// Makes a page that shows the maker's pages with WebKit. Off Windows it is
// the entry of the pages' own module, which the windows' module loads by name.
extern "C" {
Q_DECL_EXPORT WebPage *zanmirMakeWebPage(QWidget *parent);
}

#endif // WEBPAGEENTRY_H
