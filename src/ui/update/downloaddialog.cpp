#include "downloaddialog.h"
#include "ui_downloaddialog.h"

#include "applupdater.h"
#include "downloadtexts.h"
#include "processlauncher.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMessageBox>

namespace {

// The bar counts in steps of a thousandth, as its range is an int and an
// installer's size need not fit one.
constexpr int kBarSteps = 1000;

} // namespace

DownloadDialog::DownloadDialog(bool wait, QWidget *parent)
    : QDialog(parent)
    , ui(new Ui::DownloadDialog)
    , m_wait(wait)
{
    ui->setupUi(this);
    ui->progressBar->setValue(0);
    showStage(Stage::Downloading);
}

DownloadDialog::~DownloadDialog()
{
    delete ui;
}

void DownloadDialog::setProcessLauncher(ProcessLauncher *launcher)
{
    m_launcher = launcher;
    connect(ui->cancelButton, SIGNAL(clicked()), this, SLOT(cancelClicked()));
    connect(ui->retryButton, SIGNAL(clicked()), this, SLOT(retryClicked()));
}

bool DownloadDialog::startDownload(const QString &url, const QString &fileName)
{
    m_url = url;
    m_fileName = fileName;
    return startTransfer();
}

bool DownloadDialog::startTransfer()
{
    ApplUpdater *updater = m_launcher->getApplUpdater();
    // The one refusal before a download: an installer that nothing could vouch for.
    if (!updater->startDownload(m_url, m_fileName)) {
        QMessageBox::critical(this, tr("Error"),
            tr("The installer was not downloaded: it, or the update catalogue that names it, comes over an "
               "unencrypted connection (plain http), and the catalogue gives no checksum to show that it is the "
               "maker's file.\n\n%1")
                .arg(updater->getErrorText()),
            QMessageBox::Ok);
        return false;
    }
    m_launcher->writeLog(QStringLiteral("DownloadDialog:: Download started: %1").arg(m_url));
    listenToUpdater(true);
    m_rate.restart();
    m_clock.start();
    return true;
}

void DownloadDialog::listenToUpdater(bool listen)
{
    ApplUpdater *updater = m_launcher->getApplUpdater();
    if (listen) {
        connect(updater, SIGNAL(signalDownloadFinished(QString, bool)), this, SLOT(downloadFinished(QString, bool)));
        connect(updater, SIGNAL(signalUpdateProgress(qint64, qint64)), this, SLOT(updateProgress(qint64, qint64)));
    } else {
        disconnect(updater, SIGNAL(signalDownloadFinished(QString, bool)), this, SLOT(downloadFinished(QString, bool)));
        disconnect(updater, SIGNAL(signalUpdateProgress(qint64, qint64)), this, SLOT(updateProgress(qint64, qint64)));
    }
}

void DownloadDialog::showStage(Stage stage)
{
    switch (stage) {
    case Stage::Downloading:
        ui->captionLabel->setText(tr("Now downloading..."));
        ui->statusLabel->clear();
        ui->retryButton->hide();
        break;
    case Stage::Failed:
        ui->captionLabel->setText(tr("The download failed."));
        // A busy bar would say that something is still going on.
        if (ui->progressBar->maximum() == 0)
            ui->progressBar->setMaximum(kBarSteps);
        ui->retryButton->show();
        break;
    }
}

void DownloadDialog::updateProgress(qint64 bytesRead, qint64 totalBytes)
{
    m_rate.addSample(m_clock.elapsed(), bytesRead);
    ui->statusLabel->setText(DownloadTexts::progress(bytesRead, totalBytes, m_rate.bytesPerSecond()));
    if (totalBytes < 0) {
        // A busy bar: the length is unknown, the bytes so far are in the line below.
        ui->progressBar->setRange(0, 0);
        return;
    }
    ui->progressBar->setRange(0, kBarSteps);
    ui->progressBar->setValue(totalBytes == 0 ? kBarSteps : int(bytesRead * kBarSteps / totalBytes));
}

void DownloadDialog::downloadFinished(const QString &message, bool b)
{
    Q_UNUSED(message) // the log has it; the user gets the cause in words
    listenToUpdater(false);
    ApplUpdater *updater = m_launcher->getApplUpdater();
    if (!b) {
        // The dialog stays open with the bar where it stopped: the user
        // retries, or ends it with Cancel or the close button.
        const QString cause = DownloadTexts::failure(updater->getDownloadFailure());
        showStage(Stage::Failed);
        ui->statusLabel->setText(cause);
        QMessageBox::critical(this, tr("Error"), cause, QMessageBox::Ok);
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

void DownloadDialog::retryClicked()
{
    m_launcher->writeLog(QStringLiteral("DownloadDialog::retryClicked()"));
    showStage(Stage::Downloading);
    if (!startTransfer())
        showStage(Stage::Failed);
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
