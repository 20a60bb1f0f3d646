#ifndef CUSTOMWEBVIEW_H
#define CUSTOMWEBVIEW_H

#include <QList>
#include <QPoint>
#include <QWebView>

class QWebPage;

// A web view that never opens a window of its own: whatever a page asks to
// open in a new window goes to the system's browser, as the link under the
// pointer's last press.
class CustomWebView : public QWebView
{
    Q_OBJECT

public:
    explicit CustomWebView(QWidget *parent = nullptr);
    ~CustomWebView() override;

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    QWebView *createWindow(QWebPage::WebWindowType type) override;

private:
    QPoint m_lastPosition;
    // Made for new-window requests and never shown; they go with this view.
    QList<QWebView *> m_views;
    QList<QWebPage *> m_pages;
};

#endif // CUSTOMWEBVIEW_H
