// Open-with flow and the single-instance lock.
#include "processlauncher.h"

#include "applinfo.h"
#include "editordocmanager.h"
#include "editorinfo.h"
#include "registry.h"

#include <QDateTime>
#include <QLockFile>
#include <QMessageBox>

namespace {

void showCritical(QWidget *parent, const QString &text)
{
    QMessageBox::critical(parent, ProcessLauncher::tr("Error"), text, QMessageBox::Ok, QMessageBox::NoButton);
}

} // namespace

bool ProcessLauncher::detectWhetherOpenWithFiles()
{
    if (m_arguments.isEmpty()) {
        writeLog(QStringLiteral("ProcessLauncher::detectWhetherOpenWithFiles: no files opened with launcher"));
        return false;
    }
    // Options only, or a file that does not exist: on to the main window.
    if (m_openFilePath.isEmpty())
        return false;

    // A box shown for a file it cannot open still ends the process with 0.
    if (openProjectFile(m_openFilePath) == ProjectStart::StartFailed)
        m_exitStatus = 1;
    return true;
}

bool ProcessLauncher::acceptProjectFile(const QString &filePath, QWidget *parent)
{
    if (EditorDocManager::documentKind(filePath) != EditorDocManager::UnsupportedDocument)
        return true;
    refuseUnsupportedFiles({ filePath }, parent);
    return false;
}

void ProcessLauncher::refuseUnsupportedFiles(const QStringList &filePaths, QWidget *parent)
{
    showCritical(parent, tr("This file has unsupported extension.\n%1").arg(filePaths.join(QLatin1Char('\n'))));
}

ProcessLauncher::ProjectStart ProcessLauncher::openProjectFile(
    const QString &filePath, QWidget *parent, EditorInfo *chosenEditor)
{
    if (!acceptProjectFile(filePath, parent))
        return ProjectStart::Refused;

    EditorInfo editor;
    if (m_applInfo->hasSelectedVersion()) {
        // The user's default version wins outright; the project is not read,
        // and there is no fall-back to another installed version.
        editor = m_registry->findVersion(m_applInfo->getSelectedVersion());
        if (editor.isEmpty()) {
            showCritical(parent,
                tr("Failed to launch default editor.\nPlease launch Zanmir Launcher, and confirm the "
                   "installation by 'Manage Zanmir Editor'."));
            return ProjectStart::Refused;
        }
    } else {
        EditorDocManager document(this, filePath);
        document.createDocument();
        EditorInfo saved;
        if (!document.getEditorInfo(saved, QDateTime())) {
            showCritical(parent, tr("Failed to open project file.\n\nPlease confirm the file is not corrupted."));
            return ProjectStart::Refused;
        }
        editor = m_registry->findVersionForDocument(saved);
        if (editor.isEmpty()) {
            showCritical(parent,
                tr("Failed to launch editor.\nPlease launch Zanmir Launcher, and confirm the installation "
                   "by 'Manage Zanmir Editor'."));
            return ProjectStart::Refused;
        }
    }

    if (chosenEditor)
        *chosenEditor = editor;
    if (!openFileByApplication(filePath, editor.getPath()))
        return ProjectStart::StartFailed;
    // A failed save of the recent-project list changes nothing the user sees.
    addHistoryAfterLaunch(editor, filePath);
    return ProjectStart::Started;
}

bool ProcessLauncher::lockManagerFile(QLockFile &lock)
{
    // A lock left by a crashed launcher is taken over by QLockFile's stale rule.
    if (lock.tryLock(100))
        return false;
    m_exitStatus = 1;
    QMessageBox::warning(
        nullptr, tr("warning"), tr("Zanmir Launcher is already launched."), QMessageBox::Ok, QMessageBox::NoButton);
    return true;
}
