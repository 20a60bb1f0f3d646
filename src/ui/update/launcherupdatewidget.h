#ifndef LAUNCHERUPDATEWIDGET_H
#define LAUNCHERUPDATEWIDGET_H

#include <QWidget>

class ProcessLauncher;
class WebPage;

namespace Ui {
class LauncherUpdateWidget;
}

// Stands in for the main window while a newer launcher is on offer: the
// launcher cannot be used until it is updated. Cancel ends the process with
// status 1, a finished download with status 0; the close button ends the
// event loop with no update.
class LauncherUpdateWidget : public QWidget
{
    Q_OBJECT

public:
    explicit LauncherUpdateWidget(QWidget *parent = nullptr);
    ~LauncherUpdateWidget() override;

    void setProcessLauncher(ProcessLauncher *launcher);

public slots:
    void clicked();
    void cancelClicked();

private:
    Ui::LauncherUpdateWidget *ui;
    WebPage *m_historyPage;
    ProcessLauncher *m_launcher = nullptr;
};

#endif // LAUNCHERUPDATEWIDGET_H
