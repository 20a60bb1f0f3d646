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
class DownloadDialog : public QDialog
{
    Q_OBJECT

public:
    // With wait true the started file is waited for, the whole program
    // blocked meanwhile.
    explicit DownloadDialog(bool wait, QWidget *parent = nullptr);
    ~DownloadDialog() override;

    // Called first, before startDownload.
    void setProcessLauncher(ProcessLauncher *launcher);
    // Only after true is the dialog run; on false the user has been told why
    // the installer was refused.
    bool startDownload(const QString &url, const QString &fileName);

public slots:
    void downloadFinished(const QString &message, bool b);
    void updateProgress(qint64 bytesRead, qint64 totalBytes);
    void cancelClicked();
    void retryClicked();

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    // What the window shows; each stage sets the caption, the bar and the
    // buttons whole.
    enum class Stage { Downloading, Failed };

    void showStage(Stage stage);
    bool startTransfer();
    void listenToUpdater(bool listen);

    Ui::DownloadDialog *ui;
    ProcessLauncher *m_launcher = nullptr;
    bool m_wait;
    QString m_url;
    QString m_fileName;
    QElapsedTimer m_clock;
    TransferRate m_rate;
};

#endif // DOWNLOADDIALOG_H
