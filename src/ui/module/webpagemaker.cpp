#include "webpage.h"

#ifdef ZANMIR_WEB_MODULE
#include "launchermodule.h"

#include <QLibrary>
#else
#include "webpageentry.h"
#endif

WebPage *WebPage::make(QWidget *parent)
{
#ifdef ZANMIR_WEB_MODULE
    // Loaded with the first page and kept to the end; a module that cannot
    // be loaded is not tried again for the next page.
    static QLibrary module;
    static const auto entry = [] {
        LauncherModule::load(module, QStringLiteral(ZANMIR_WEB_MODULE));
        return reinterpret_cast<WebPage *(*)(QWidget *)>(module.resolve("zanmirMakeWebPage"));
    }();
    if (!entry)
        return new MissingWebPage(module.errorString(), parent);
    return entry(parent);
#else
    return zanmirMakeWebPage(parent);
#endif
}
