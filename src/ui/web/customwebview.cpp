#include "customwebview.h"

#include "desktophandover.h"

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QWebFrame>
#include <QWebHitTestResult>
#include <QWebPage>
#include <QWebSettings>

CustomWebView::CustomWebView(QWidget *parent)
    : QWebView(parent)
{
    // Whoever controls the network path writes these pages. A local page may
    // otherwise read the user's files and send them away; plugins run native
    // code; storage and databases would carry one page's data to the next run.
    QWebSettings *pageSettings = settings();
    pageSettings->setAttribute(QWebSettings::LocalContentCanAccessFileUrls, false);
    pageSettings->setAttribute(QWebSettings::LocalContentCanAccessRemoteUrls, false);
    pageSettings->setAttribute(QWebSettings::PluginsEnabled, false);
    pageSettings->setAttribute(QWebSettings::JavaEnabled, false);
    pageSettings->setAttribute(QWebSettings::LocalStorageEnabled, false);
    pageSettings->setAttribute(QWebSettings::OfflineStorageDatabaseEnabled, false);
    pageSettings->setAttribute(QWebSettings::OfflineWebApplicationCacheEnabled, false);
    // A file dropped here is a project for the window to open, never a page
    // to show.
    setAcceptDrops(false);
}

CustomWebView::~CustomWebView()
{
    qDeleteAll(m_pages);
    qDeleteAll(m_views);
}

void CustomWebView::mousePressEvent(QMouseEvent *event)
{
    m_lastPosition = event->pos();
    m_userAction = true;
    m_refusalLogged = false;
    QWebView::mousePressEvent(event);
}

void CustomWebView::mouseReleaseEvent(QMouseEvent *event)
{
    // A click's handlers run here; after them the press is used up.
    QWebView::mouseReleaseEvent(event);
    m_userAction = false;
}

void CustomWebView::contextMenuEvent(QContextMenuEvent *event)
{
    m_lastPosition = event->pos();
    m_userAction = true;
    m_refusalLogged = false;
    // The menu runs inside, its new-window actions included.
    QWebView::contextMenuEvent(event);
    m_userAction = false;
}

QWebView *CustomWebView::createWindow(QWebPage::WebWindowType type)
{
    // A script of the page's own, on a timer or in a loop, opens nothing.
    if (!m_userAction) {
        if (!m_refusalLogged)
            writeLog(QStringLiteral("CustomWebView::createWindow: Refused a new window that no click asked for"));
        m_refusalLogged = true;
        return nullptr;
    }
    m_userAction = false;

    // The engine wants a view to load into; it gets one, hidden, and the
    // request itself ends here.
    auto *view = new QWebView;
    m_views.append(view);
    auto *page = new QWebPage(view);
    m_pages.append(page);
    if (type == QWebPage::WebModalDialog)
        view->setWindowModality(Qt::ApplicationModal);
    view->setAttribute(Qt::WA_DeleteOnClose);
    view->setPage(page);

    // What opens is the link under the last press, not what a script asked
    // for: the pages open their links through new-window requests.
    const QUrl link = this->page()->mainFrame()->hitTestContent(m_lastPosition).linkUrl();
    if (!DesktopHandOver::isAllowed(link)) {
        writeLog(QStringLiteral("CustomWebView::createWindow: %1").arg(DesktopHandOver::refusalText(link)));
        return nullptr;
    }
    // A desktop that cannot open it is ignored, as a failed hand-over always was.
    DesktopHandOver::open(link);
    return nullptr;
}

void CustomWebView::writeLog(const QString &message) const
{
    if (m_log)
        m_log(message);
}
