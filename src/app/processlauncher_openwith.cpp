// Open-with flow and the single-instance lock.
#include "processlauncher.h"

#include "applinfo.h"
#include "editordocmanager.h"
#include "editorinfo.h"
#include "registry.h"

#include <QDateTime>
#include <QLockFile>
#include <QMessageBox>

static void showCritical(const QString &text)
{
    QMessageBox::critical(nullptr, ProcessLauncher::tr("Error"), text, QMessageBox::Ok, QMessageBox::NoButton);
}

bool ProcessLauncher::detectWhetherOpenWithFiles()
{
    if (m_arguments.isEmpty()) {
        writeLog(QStringLiteral("ProcessLauncher::detectWhetherOpenWithFiles: no files opened with launcher"));
        return false;
    }
    // Options only, or a file that does not exist: on to the main window.
    if (m_openFilePath.isEmpty())
        return false;

    if (EditorDocManager::documentKind(m_openFilePath) >= 2) {
        showCritical(tr("This file has unsupported extension.\n%1").arg(m_openFilePath));
        return true;
    }

    EditorInfo editor;
    if (m_applInfo->hasSelectedVersion()) {
        // The user's default version wins outright; the project is not read,
        // and there is no fall-back to another installed version.
        editor = m_registry->findVersion(m_applInfo->getSelectedVersion());
        if (editor.isEmpty()) {
            showCritical(tr("Failed to launch default editor.\nPlease launch Zanmir Launcher, and confirm the "
                            "installation by 'Manage Zanmir Editor'."));
            return true;
        }
    } else {
        EditorDocManager document(this, m_openFilePath);
        document.createDocument();
        EditorInfo saved;
        if (!document.getEditorInfo(saved, QDateTime())) {
            showCritical(tr("Failed to open project file.\n\nPlease confirm the file is not corrupted."));
            return true;
        }
        editor = m_registry->findVersionForDocument(saved);
        if (editor.isEmpty()) {
            showCritical(tr("Failed to launch editor.\nPlease launch Zanmir Launcher, and confirm the installation "
                            "by 'Manage Zanmir Editor'."));
            return true;
        }
    }

    if (openFileByApplication(m_openFilePath, editor.getPath())) {
        // A failed save of the recent-project list changes nothing the user sees.
        addHistoryAfterLaunch(editor, m_openFilePath);
    } else {
        m_exitStatus = 1;
    }
    return true;
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
