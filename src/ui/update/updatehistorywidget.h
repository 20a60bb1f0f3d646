#ifndef UPDATEHISTORYWIDGET_H
#define UPDATEHISTORYWIDGET_H

#include <QDialog>
#include <QString>

class ProcessLauncher;
class WebPage;

namespace Ui {
class UpdateHistoryWidget;
}

// What the history dialog is opened for; the numbers are the ones the
// dialog takes, any other number being show only.
enum HistoryMode { UpdateMode = 1, InstallMode = 2, ShowOnlyMode = 3 };

// The release notes of the editor beside the decision to update or install
// it, or, in show-only mode, just the notes. Accepted only after the user
// has confirmed.
class UpdateHistoryWidget : public QDialog
{
    Q_OBJECT

public:
    explicit UpdateHistoryWidget(QWidget *parent = nullptr);
    ~UpdateHistoryWidget() override;

    void setProcessLauncher(ProcessLauncher *launcher);
    // A HistoryMode.
    void setDialogMode(int mode, const QString &applicationName, const QString &version, const QString &url);

public slots:
    void clicked();
    void cancelClicked();

private:
    Ui::UpdateHistoryWidget *ui;
    WebPage *m_historyPage;
    ProcessLauncher *m_launcher = nullptr;
    QString m_applicationName;
    QString m_version;
};

#endif // UPDATEHISTORYWIDGET_H
