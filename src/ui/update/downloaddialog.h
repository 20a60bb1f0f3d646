#ifndef DOWNLOADDIALOG_H
#define DOWNLOADDIALOG_H

#include <QDialog>

class ProcessLauncher;

namespace Ui {
class DownloadDialog;
}

// The progress of one installer download, with a way to stop it. When the
// download ends well the dialog starts the file itself before it closes:
// exec() returns 1 only then. A failure stays on screen until the user ends
// the dialog.
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

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    // The words of a failed download for the user.
    QString failureText(const QString &message) const;

    Ui::DownloadDialog *ui;
    ProcessLauncher *m_launcher = nullptr;
    bool m_wait;
};

#endif // DOWNLOADDIALOG_H
