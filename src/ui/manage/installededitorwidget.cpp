#include "installededitorwidget.h"

#include "processlauncher.h"

InstalledEditorWidget::InstalledEditorWidget(QWidget *parent)
    : QWidget(parent)
{ }

InstalledEditorWidget::~InstalledEditorWidget() = default;

void InstalledEditorWidget::setProcessLauncher(ProcessLauncher *launcher)
{
    m_launcher = launcher;
    m_launcher->writeLog(
        QStringLiteral("InstalledEditorWidget::setProcessLauncher: the editor management page is not built yet"));
}

void InstalledEditorWidget::rebuildRows() { }
