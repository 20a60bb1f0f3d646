#include "projectopener.h"

#include "applinfo.h"
#include "editordocmanager.h"
#include "editorinfo.h"
#include "processlauncher.h"
#include "timerstopper.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QMimeData>
#include <QUrl>

namespace {

ProjectOpener::Chooser &chooser()
{
    static ProjectOpener::Chooser instance;
    return instance;
}

} // namespace

ProjectOpener::ProjectOpener(ProcessLauncher *launcher, QWidget *parent)
    : QObject(parent)
    , m_launcher(launcher)
    , m_parent(parent)
{ }

QStringList ProjectOpener::droppedFiles(const QMimeData *data)
{
    QStringList files;
    const QList<QUrl> urls = data ? data->urls() : QList<QUrl>();
    for (const QUrl &url : urls) {
        if (url.isLocalFile())
            files.append(QFileInfo(url.toLocalFile()).absoluteFilePath());
    }
    return files;
}

QString ProjectOpener::projectAmong(const QStringList &files, QStringList &unsupported)
{
    QString project;
    for (const QString &file : files) {
        const QFileInfo info(file);
        if (info.isDir() || EditorDocManager::documentKind(file) == EditorDocManager::UnsupportedDocument)
            unsupported.append(file);
        else if (project.isEmpty())
            project = info.absoluteFilePath();
    }
    return project;
}

void ProjectOpener::setChooser(const Chooser &replacement)
{
    chooser() = replacement;
}

void ProjectOpener::chooseAndOpen()
{
    // The daily check must not fall inside the dialog's loop or a box's.
    const TimerStopper stopper(m_launcher->getUpdateNotifier());
    const QList<HistoryInfo> histories = m_launcher->getApplInfo()->getHistories();
    QString folder = histories.isEmpty() ? QString() : QFileInfo(histories.first().getOpenFilePath()).path();
    if (folder.isEmpty() || !QFileInfo(folder).isDir())
        folder = QDir::homePath();

    const QString path = chooser()
        ? chooser()(m_parent, folder)
        : QFileDialog::getOpenFileName(m_parent, tr("Open project"), folder, tr("Zanmir projects (*.zmr *.xml)"));
    if (!path.isEmpty())
        open(QFileInfo(path).absoluteFilePath());
}

void ProjectOpener::openFiles(const QStringList &files)
{
    const TimerStopper stopper(m_launcher->getUpdateNotifier());
    QStringList unsupported;
    const QString project = projectAmong(files, unsupported);
    if (!project.isEmpty())
        open(project);
    if (!unsupported.isEmpty())
        m_launcher->refuseUnsupportedFiles(unsupported, m_parent);
}

void ProjectOpener::open(const QString &path)
{
    EditorInfo editor;
    switch (m_launcher->openProjectFile(path, m_parent, &editor)) {
    case ProcessLauncher::ProjectStart::Started:
        // The card comes to the front.
        emit m_launcher->getApplInfo()->signalHistoryInfoUpdated();
        break;
    case ProcessLauncher::ProjectStart::StartFailed:
        // Windowless, a failed start ends with status 1; here the user is told.
        QMessageBox::warning(m_parent, QCoreApplication::applicationName(),
            QCoreApplication::translate("RecentUsedWidget", "Failed to launch %1").arg(editor.getApplName()),
            QMessageBox::Ok);
        break;
    case ProcessLauncher::ProjectStart::Refused:
        break;
    }
}
