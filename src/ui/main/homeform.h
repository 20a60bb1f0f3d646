#ifndef HOMEFORM_H
#define HOMEFORM_H

#include <QString>
#include <QWidget>

class ProcessLauncher;
class ProjectOpener;
class WebPage;

namespace Ui {
class HomeForm;
}

// The main window: the menu strip above five pages, one visible at a time.
// It also decides when the update catalogue is read again: at set-up, on
// Refresh, after the preferences, and once a day on the refresh timer.
// What is slow in setting up (the web pages, and the web engine with them,
// and the catalogue's second reading) waits until the window has been
// painted once, so that the window shows at once. A project file dropped
// anywhere on the window opens as a double click in the file manager
// opens it.
class HomeForm : public QWidget
{
    Q_OBJECT

public:
    explicit HomeForm(QWidget *parent = nullptr);
    ~HomeForm() override;

    // Called once by the entry function, before show(). The set-up ends
    // right after the window's first paint.
    void setProcessLauncher(ProcessLauncher *launcher);
    // The web pages are loading and the refresh timer runs.
    bool isSetUp() const { return m_setUp; }
    // The news and help pages in their scroll areas, with no address yet.
    // The set-up makes them after the first paint rather than with the
    // form: loading WebKit, and a web view's first page starting the web
    // engine, take longer than the rest of the window.
    void makeWebPages();

public slots:
    void buttonClicked(const QString &message);
    void fireUpdate();

protected:
    void showEvent(QShowEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private slots:
    void finishSetUp();

private:
    void hidePages();
    // Ends the set-up right after the first paint: at once when the window
    // has been painted already, else when the window system exposes it.
    void finishSetUpWhenPainted();

    Ui::HomeForm *ui;
    ProcessLauncher *m_launcher = nullptr;
    ProjectOpener *m_projectOpener = nullptr;
    WebPage *m_infoPage = nullptr;
    WebPage *m_helpPage = nullptr;
    bool m_setUpPending = false;
    bool m_setUp = false;
};

#endif // HOMEFORM_H
