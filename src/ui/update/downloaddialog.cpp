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

void DownloadDialog::setPackage(const QString &applName, const QString &version)
{
    m_applName = applName;
    m_version = version;
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
        QMessageBox::critical(this, tr("Error"), DownloadTexts::refusal(updater->getErrorText()), QMessageBox::Ok);
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
    m_stage = stage;
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
    case Stage::Installing:
        setWindowTitle(tr("Installing"));
        ui->captionLabel->setText(tr("Installing %1 ver %2...").arg(m_applName, m_version));
        ui->statusLabel->setText(tr("The installer runs in a window of its own; this one closes when it has ended."));
        break;
    case Stage::Uninstalling:
        setWindowTitle(tr("Uninstalling"));
        ui->captionLabel->setText(tr("Uninstalling %1 ver %2...").arg(m_applName, m_version));
        ui->statusLabel->setText(tr("The uninstaller runs in a window of its own; this one closes when it has ended."));
        break;
    }
    // How long a program runs nobody can tell, and nobody can stop it from here.
    const bool programRuns = stage == Stage::Installing || stage == Stage::Uninstalling;
    if (programRuns) {
        ui->progressBar->setRange(0, 0);
        ui->retryButton->hide();
    }
    ui->cancelButton->setVisible(!programRuns);
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
    // A launcher that is closing starts nothing more.
    if (m_launcher->isClosing()) {
        reject();
        return;
    }
    if (m_wait)
        showStage(Stage::Installing);
    m_programRunning = m_wait;
    const bool opened = updater->openDownloadFile(m_wait);
    m_programRunning = false;
    if (!opened) {
        // Left running as the launcher closes: every loop ends, this one too.
        if (updater->isLeftRunning())
            return;
        QMessageBox::critical(this, tr("Error"), updater->getErrorText(), QMessageBox::Ok);
        reject();
        return;
    }
    accept();
}

bool DownloadDialog::runUninstaller(const QString &command)
{
    showStage(Stage::Uninstalling);
    setWindowModality(Qt::ApplicationModal);
    show();
    m_programRunning = true;
    const bool opened = m_launcher->getApplUpdater()->openUninstallerFile(command, true);
    m_programRunning = false;
    hide();
    return opened;
}

void DownloadDialog::offerToClose()
{
    const QString running = m_stage == Stage::Uninstalling
        ? tr("The uninstaller of %1 ver %2 is still running.").arg(m_applName, m_version)
        : tr("The installer of %1 ver %2 is still running.").arg(m_applName, m_version);
    if (QMessageBox::question(this, tr("Confirm"),
            running + QStringLiteral("\n\n") + tr("Close Zanmir Launcher and leave it running?"),
            QMessageBox::Yes | QMessageBox::No)
        == QMessageBox::No)
        return;
    m_launcher->writeLog(QStringLiteral("DownloadDialog::closed(): the launcher closes; the program goes on"));
    m_launcher->closeLauncher();
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
    if (m_programRunning) {
        event->ignore();
        offerToClose();
        return;
    }
    m_launcher->getApplUpdater()->cancelDownload();
    m_launcher->writeLog(QStringLiteral("DownloadDialog::closed()"));
    reject();
    event->accept();
}

void DownloadDialog::keyPressEvent(QKeyEvent *event)
{
    // Escape would reject the dialog and leave the download running; while a
    // program runs there is nothing to cancel.
    if (event->key() == Qt::Key_Escape) {
        if (!m_programRunning)
            cancelClicked();
        return;
    }
    QDialog::keyPressEvent(event);
}

void DownloadDialog::done(int result)
{
    if (!m_programRunning)
        QDialog::done(result);
}
