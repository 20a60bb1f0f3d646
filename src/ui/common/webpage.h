#ifndef WEBPAGE_H
#define WEBPAGE_H

#include <QString>
#include <QWidget>

class ProcessLauncher;

// One of the maker's pages, as the windows use it. Off Windows the pages,
// and WebKit with them, live in a module of their own that is loaded when
// the first page is made, after the main window's first paint.
class WebPage : public QWidget
{
    Q_OBJECT

public:
    explicit WebPage(QWidget *parent = nullptr)
        : QWidget(parent)
    { }

    // Called once, before setUrl.
    virtual void setProcessLauncher(ProcessLauncher *launcher) = 0;
    virtual void setUrl(const QString &url) = 0;

    // A new page; where the pages' module cannot be loaded, a page that says so.
    static WebPage *make(QWidget *parent = nullptr);
    // A new page where the placeholder stands in its parent's layout, under
    // its name; the placeholder is deleted.
    static WebPage *makeInPlaceOf(QWidget *placeholder);
};

// Stands in for a page when the module that shows them cannot be loaded, so
// that the rest of the window goes on working.
class MissingWebPage : public WebPage
{
    Q_OBJECT

public:
    explicit MissingWebPage(const QString &reason, QWidget *parent = nullptr);

    void setProcessLauncher(ProcessLauncher *launcher) override;
    void setUrl(const QString &url) override { Q_UNUSED(url) }

private:
    QString m_reason;
};

#endif // WEBPAGE_H
