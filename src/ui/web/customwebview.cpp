#include "customwebview.h"

#include <QContextMenuEvent>
#include <QDesktopServices>
#include <QMouseEvent>
#include <QWebFrame>
#include <QWebHitTestResult>
#include <QWebPage>

CustomWebView::CustomWebView(QWidget *parent)
    : QWebView(parent)
{ }

CustomWebView::~CustomWebView()
{
    qDeleteAll(m_pages);
    qDeleteAll(m_views);
}

void CustomWebView::mousePressEvent(QMouseEvent *event)
{
    m_lastPosition = event->pos();
    QWebView::mousePressEvent(event);
}

void CustomWebView::contextMenuEvent(QContextMenuEvent *event)
{
    m_lastPosition = event->pos();
    QWebView::contextMenuEvent(event);
}

QWebView *CustomWebView::createWindow(QWebPage::WebWindowType type)
{
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
    QDesktopServices::openUrl(link);
    return nullptr;
}
