#ifndef CUSTOMWEBVIEW_H
#define CUSTOMWEBVIEW_H

#include "logfunction.h"

#include <QList>
#include <QPoint>
#include <QWebView>

class QWebPage;

// A web view that never opens a window of its own: what a page asks to open
// in a new window goes to the system's browser, as the link under the
// pointer's last press, once per press of the user's and only for the
// addresses that the desktop may be handed.
//
// The pages come from the network, so the view is locked down: no page reads
// local files, runs plugins or keeps storage that outlives the process.
class CustomWebView : public QWebView
{
    Q_OBJECT

public:
    explicit CustomWebView(QWidget *parent = nullptr);
    ~CustomWebView() override;

    // Where refused requests are logged.
    void setLogFunction(const LogFunction &log) { m_log = log; }

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    QWebView *createWindow(QWebPage::WebWindowType type) override;

private:
    void writeLog(const QString &message) const;

    QPoint m_lastPosition;
    // A press of the user's (or a context menu) that is still being handled
    // and has not yet opened anything; a page's own requests find none.
    bool m_userAction = false;
    // A page that asks for windows in a loop gets one log line, not one per request.
    bool m_refusalLogged = false;
    LogFunction m_log;
    // Made for new-window requests and never shown; they go with this view.
    QList<QWebView *> m_views;
    QList<QWebPage *> m_pages;
};

#endif // CUSTOMWEBVIEW_H
