#ifndef DOWNLOADDIALOG_H
#define DOWNLOADDIALOG_H

#include "transferrate.h"

#include <QDialog>
#include <QElapsedTimer>

class ProcessLauncher;

namespace Ui {
class DownloadDialog;
}

// The progress of one installer download, with a way to stop it: bytes done
// of the whole, speed and time left. When the download ends well the dialog
// starts the file itself before it closes: exec() returns 1 only then. A
// failure says its cause and stays on screen with Retry, which continues
// where the download stopped, until the user ends the dialog.
//
// While an installer or uninstaller that it started runs, the dialog says so
// with a busy bar and cannot be cancelled: it closes when the program ends.
// Its close button then offers to close the launcher, leaving the program
// running.
class DownloadDialog : public QDialog
{
    Q_OBJECT

public:
    // With wait true the started file is waited for, the window painting and
    // the rest of the program taking no input meanwhile.
    explicit DownloadDialog(bool wait, QWidget *parent = nullptr);
    ~DownloadDialog() override;

    // Called first, before startDownload.
    void setProcessLauncher(ProcessLauncher *launcher);
    // The version that the installer installs or the uninstaller removes,
    // as the dialog names it while the program runs.
    void setPackage(const QString &applName, const QString &version);
    // Only after true is the dialog run; on false the user has been told why
    // the installer was refused.
    bool startDownload(const QString &url, const QString &fileName);
    // Shows the dialog while the uninstall command runs, and returns when it
    // has ended. False when it could not be started (ApplUpdater's error
    // text says why), or when the launcher closes first
    // (ApplUpdater::isLeftRunning).
    bool runUninstaller(const QString &command);

public slots:
    void downloadFinished(const QString &message, bool b);
    void updateProgress(qint64 bytesRead, qint64 totalBytes);
    void cancelClicked();
    void retryClicked();

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    // Ignored while a program runs: only its end closes the dialog then.
    void done(int result) override;

private:
    // What the window shows; each stage sets the caption, the bar and the
    // buttons whole.
    enum class Stage { Downloading, Failed, Installing, Uninstalling };

    void showStage(Stage stage);
    bool startTransfer();
    void listenToUpdater(bool listen);
    // The program goes on; the launcher closes if the user says so.
    void offerToClose();

    Ui::DownloadDialog *ui;
    ProcessLauncher *m_launcher = nullptr;
    bool m_wait;
    Stage m_stage = Stage::Downloading;
    bool m_programRunning = false;
    QString m_applName;
    QString m_version;
    QString m_url;
    QString m_fileName;
    QElapsedTimer m_clock;
    TransferRate m_rate;
};

#endif // DOWNLOADDIALOG_H
