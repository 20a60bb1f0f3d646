#include "downloaddialog.h"
#include "ui_downloaddialog.h"

#include "applupdater.h"
#include "processlauncher.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMessageBox>

DownloadDialog::DownloadDialog(bool wait, QWidget *parent)
    : QDialog(parent)
    , ui(new Ui::DownloadDialog)
    , m_wait(wait)
{
    ui->setupUi(this);
    ui->progressBar->setValue(0);
}

DownloadDialog::~DownloadDialog()
{
    delete ui;
}

void DownloadDialog::setProcessLauncher(ProcessLauncher *launcher)
{
    m_launcher = launcher;
    connect(ui->cancelButton, SIGNAL(clicked()), this, SLOT(cancelClicked()));
}

bool DownloadDialog::startDownload(const QString &url, const QString &fileName)
{
    ApplUpdater *updater = m_launcher->getApplUpdater();
    // The one refusal before a download: an installer that nothing could vouch for.
    if (!updater->startDownload(url, fileName)) {
        QMessageBox::critical(this, tr("Error"),
            tr("The installer was not downloaded: it, or the update catalogue that names it, comes over an "
               "unencrypted connection (plain http), and the catalogue gives no checksum to show that it is the "
               "maker's file.\n\n%1")
                .arg(updater->getErrorText()),
            QMessageBox::Ok);
        return false;
    }
    m_launcher->writeLog(QStringLiteral("DownloadDialog:: Download started: %1").arg(url));
    connect(updater, SIGNAL(signalDownloadFinished(QString, bool)), this, SLOT(downloadFinished(QString, bool)));
    connect(updater, SIGNAL(signalUpdateProgress(qint64, qint64)), this, SLOT(updateProgress(qint64, qint64)));
    return true;
}

void DownloadDialog::updateProgress(qint64 bytesRead, qint64 totalBytes)
{
    // Handed over as they come, cut to the bar's range, without scaling.
    if (totalBytes < 0) {
        ui->progressBar->setMaximum(100);
        ui->progressBar->setValue(0);
        return;
    }
    ui->progressBar->setMaximum(int(totalBytes));
    ui->progressBar->setValue(int(bytesRead));
}

void DownloadDialog::downloadFinished(const QString &message, bool b)
{
    ApplUpdater *updater = m_launcher->getApplUpdater();
    disconnect(updater, SIGNAL(signalDownloadFinished(QString, bool)), this, SLOT(downloadFinished(QString, bool)));
    disconnect(updater, SIGNAL(signalUpdateProgress(qint64, qint64)), this, SLOT(updateProgress(qint64, qint64)));
    if (!b) {
        // The dialog stays open with the bar where it stopped: the user ends
        // it, with Cancel or the close button.
        QMessageBox::critical(this, tr("Error"), failureText(message), QMessageBox::Ok);
        return;
    }
    // With the wait flag the whole program stops here until the file has ended.
    if (!updater->openDownloadFile(m_wait)) {
        QMessageBox::critical(this, tr("Error"), updater->getErrorText(), QMessageBox::Ok);
        reject();
        return;
    }
    accept();
}

QString DownloadDialog::failureText(const QString &message) const
{
    const QString certificate = m_launcher->getApplUpdater()->getCertificateErrors();
    if (certificate.isEmpty())
        return message;
    return tr("The server's certificate could not be verified, so the installer was not downloaded. Someone may be "
              "intercepting the connection, or the server is set up wrongly.\n\n%1\n%2")
        .arg(certificate, message);
}

void DownloadDialog::cancelClicked()
{
    m_launcher->getApplUpdater()->cancelDownload();
    m_launcher->writeLog(QStringLiteral("DownloadDialog::cancelClicked()"));
    reject();
}

void DownloadDialog::closeEvent(QCloseEvent *event)
{
    m_launcher->getApplUpdater()->cancelDownload();
    m_launcher->writeLog(QStringLiteral("DownloadDialog::closed()"));
    reject();
    event->accept();
}

void DownloadDialog::keyPressEvent(QKeyEvent *event)
{
    // Escape would reject the dialog and leave the download running.
    if (event->key() == Qt::Key_Escape) {
        cancelClicked();
        return;
    }
    QDialog::keyPressEvent(event);
}
