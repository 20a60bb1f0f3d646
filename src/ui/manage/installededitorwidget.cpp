#include "installededitorwidget.h"
#include "ui_installededitorwidget.h"

#include "applinfo.h"
#include "applupdater.h"
#include "processlauncher.h"
#include "screeninfo.h"
#include "versiondescwidget.h"

namespace {

// The notice band above the rows fits its text: two lines for "no editor",
// one for a newer series on offer, and one more below either for the note of
// what the last package flow changed.
const int kNoEditorNoticeHeight = 70;
const int kRecentVersionNoticeHeight = 40;
const int kChangeNoteHeight = 30;

} // namespace

InstalledEditorWidget::InstalledEditorWidget(QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::InstalledEditorWidget)
{
    ui->setupUi(this);
}

InstalledEditorWidget::~InstalledEditorWidget()
{
    delete ui;
}

void InstalledEditorWidget::setProcessLauncher(ProcessLauncher *launcher)
{
    m_launcher = launcher;
    connect(ui->listWidget, SIGNAL(currentRowChanged(int)), this, SLOT(currentRowChanged(int)));
    connect(
        m_launcher->getApplInfo(), SIGNAL(signalCurrentEditorInfoUpdated()), this, SLOT(currentEditorInfoUpdated()));
    connect(
        m_launcher->getApplInfo(), SIGNAL(signalPinnedVersionInfoUpdated()), this, SLOT(pinnedVersionInfoUpdated()));
    connect(m_launcher->getScreenInfo(), SIGNAL(signalRefreshButtonClicked()), this, SLOT(refreshButtonClicked()));
    connect(m_launcher->getScreenInfo(), SIGNAL(signalInstallationConfirmed()), this, SLOT(installationConfirmed()));
    connect(
        m_launcher->getScreenInfo(), SIGNAL(signalInstallationNoted(QString)), this, SLOT(installationNoted(QString)));
    ui->editorInstallWidget->setProcessLauncher(m_launcher);
}

void InstalledEditorWidget::rebuildRows()
{
    const QList<EditorInfo> editors = m_launcher->getInstalledEditors();
    setVersionDesc(editors);
    makeRows(editors);
}

void InstalledEditorWidget::noticeVersions()
{
    setVersionDesc(m_launcher->getInstalledEditors());
}

void InstalledEditorWidget::buildRows()
{
    makeRows(m_launcher->getInstalledEditors());
}

void InstalledEditorWidget::makeRows(const QList<EditorInfo> &editors)
{
    ui->listWidget->hide();
    ui->listWidget->clear();
    // Later, not now: the row whose action caused this rebuild is still in
    // its slot and writes its default flag when the signal returns.
    for (VersionDescWidget *row : qAsConst(m_rows))
        row->deleteLater();
    m_rows.clear();

    for (const EditorInfo &editor : editors) {
        auto *item = new QListWidgetItem(ui->listWidget);
        auto *row = new VersionDescWidget(ui->listWidget);
        row->setProcessLauncher(m_launcher);
        row->setEditorInfo(editor);
        item->setSizeHint(row->maximumSize());
        ui->listWidget->setItemWidget(item, row);
        m_rows.append(row);
    }
    ui->listWidget->show();
}

void InstalledEditorWidget::setVersionDesc(const QList<EditorInfo> &editors)
{
    ApplUpdater *updater = m_launcher->getApplUpdater();
    bool recentVersionFound = false;
    bool updatingVersionFound = false;
    ApplUpdateInfo recent;
    if (!editors.isEmpty()) {
        recent = updater->findRecentFor(editors.first());
        if (!recent.isEmpty()) {
            m_launcher->writeLog(QStringLiteral("InstalledEditorWidget::setVersionDesc: Recent version found: %1")
                                     .arg(recent.getVersion()));
            recentVersionFound = true;
        }
    }
    for (const EditorInfo &editor : editors) {
        const ApplUpdateInfo update = updater->findUpdateFor(editor);
        if (!update.isEmpty()) {
            m_launcher->writeLog(QStringLiteral("InstalledEditorWidget::setVersionDesc: Update version found: %1 to %2")
                                     .arg(editor.getVersion(), update.getVersion()));
            updatingVersionFound = true;
            break;
        }
    }
    emit m_launcher->getScreenInfo()->signalUptodateVersionNoticed(updatingVersionFound, recentVersionFound);
    showNotice(recentVersionFound, recent, editors.isEmpty());
}

void InstalledEditorWidget::showNotice(bool recentVersionFound, const ApplUpdateInfo &recent, bool noEditor)
{
    int height = 0;
    if (noEditor) {
        ui->labelNoEditor->setText(tr("Installed editor does not exist.\nPlease install any editor."));
        ui->labelNoEditor->show();
        ui->labelRecentVersion->hide();
        height = kNoEditorNoticeHeight;
    } else if (recentVersionFound) {
        ui->labelNoEditor->hide();
        ui->labelRecentVersion->setText(tr("Recent version %1 is available.").arg(recent.getVersion()));
        ui->labelRecentVersion->show();
        height = kRecentVersionNoticeHeight;
    } else {
        ui->labelNoEditor->hide();
        ui->labelRecentVersion->hide();
    }
    ui->labelChangeNote->setText(m_note);
    ui->labelChangeNote->setVisible(!m_note.isEmpty());
    if (!m_note.isEmpty()) {
        ui->labelChangeNote->move(0, height);
        height += kChangeNoteHeight;
    }
    ui->contentsFrame->setMinimumHeight(height);
    ui->contentsFrame->setMaximumHeight(height);
}

void InstalledEditorWidget::currentRowChanged(int row)
{
    // A row never stays selected.
    if (row >= 0)
        ui->listWidget->setCurrentRow(-1);
}

void InstalledEditorWidget::currentEditorInfoUpdated()
{
    rebuildRows();
}

void InstalledEditorWidget::pinnedVersionInfoUpdated()
{
    rebuildRows();
}

void InstalledEditorWidget::refreshButtonClicked()
{
    rebuildRows();
}

void InstalledEditorWidget::installationConfirmed()
{
    rebuildRows();
}

void InstalledEditorWidget::installationNoted(const QString &note)
{
    m_note = note;
}
