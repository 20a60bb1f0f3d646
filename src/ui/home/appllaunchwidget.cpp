#include "appllaunchwidget.h"
#include "ui_appllaunchwidget.h"

#include "applinfo.h"
#include "elidedlabel.h"
#include "processlauncher.h"
#include "projectopener.h"
#include "timerstopper.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMessageBox>
#include <QMimeData>
#include <QMouseEvent>
#include <QStyle>

ApplLaunchWidget::ApplLaunchWidget(QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::ApplLaunchWidget)
{
    ui->setupUi(this);
    // The frame takes the focus so that the style sheet can show it; keys
    // that it does not use come on to the tile.
    ui->contentsFrame->setFocusPolicy(Qt::StrongFocus);
    setAcceptDrops(true);
}

ApplLaunchWidget::~ApplLaunchWidget()
{
    delete ui;
}

void ApplLaunchWidget::setProcessLauncher(ProcessLauncher *launcher)
{
    m_launcher = launcher;
}

void ApplLaunchWidget::setEditorInfo(const EditorInfo &editor)
{
    m_editor = editor;
    m_applName = editor.getApplName();
    m_displayVersion = editor.getDisplayVersion();
    m_path = editor.getPath();
    setElidedText(ui->labelApplType, m_applName);
    ui->labelApplVersion->setText(m_displayVersion);
    const QString name = tr("Start %1 %2").arg(m_applName, m_displayVersion);
    setAccessibleName(name);
    ui->contentsFrame->setAccessibleName(name);
}

QWidget *ApplLaunchWidget::getFocusWidget() const
{
    return ui->contentsFrame;
}

void ApplLaunchWidget::mousePressEvent(QMouseEvent *event)
{
    // The left button, at the press; every other button does nothing.
    if (event->button() != Qt::LeftButton)
        return;
    startEditor(QString());
}

void ApplLaunchWidget::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        startEditor(QString());
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

bool ApplLaunchWidget::startEditor(const QString &project)
{
    // The tile keeps its own copy of the record, so the editor may have gone
    // since the tiles were made.
    if (!m_launcher->fileExists(m_path)) {
        QMessageBox::warning(this, QCoreApplication::applicationName(),
            tr("Editor can not be found.\nPlease add an editor on the application screen.\n\n%1").arg(m_displayVersion),
            QMessageBox::Ok);
        return false;
    }
    if (!m_launcher->openFileByApplication(project, m_path)) {
        QMessageBox::warning(this, QCoreApplication::applicationName(),
            tr("Failed to start the editor ver. %1.\n\nPlease install the editor of the displayed version again.")
                .arg(m_displayVersion),
            QMessageBox::Ok);
        return false;
    }
    return true;
}

void ApplLaunchWidget::dragEnterEvent(QDragEnterEvent *event)
{
    if (ProjectOpener::droppedFiles(event->mimeData()).isEmpty())
        return;
    event->acceptProposedAction();
    showDropTarget(true);
}

void ApplLaunchWidget::dragLeaveEvent(QDragLeaveEvent *)
{
    showDropTarget(false);
}

void ApplLaunchWidget::dropEvent(QDropEvent *event)
{
    showDropTarget(false);
    const QStringList files = ProjectOpener::droppedFiles(event->mimeData());
    event->acceptProposedAction();
    // After the drop has ended: the program it came from waits for that
    // while a box is open.
    QMetaObject::invokeMethod(this, "openFiles", Qt::QueuedConnection, Q_ARG(QStringList, files));
}

void ApplLaunchWidget::showDropTarget(bool shown)
{
    ui->contentsFrame->setProperty("dropTarget", shown);
    ui->contentsFrame->style()->unpolish(ui->contentsFrame);
    ui->contentsFrame->style()->polish(ui->contentsFrame);
}

void ApplLaunchWidget::openFiles(const QStringList &files)
{
    const TimerStopper stopper(m_launcher->getUpdateNotifier());
    QStringList unsupported;
    const QString project = ProjectOpener::projectAmong(files, unsupported);
    // The version is the user's choice here: neither the default version
    // nor the project's own plays a part.
    if (!project.isEmpty() && startEditor(project) && m_launcher->addHistoryAfterLaunch(m_editor, project))
        emit m_launcher->getApplInfo()->signalHistoryInfoUpdated();
    if (!unsupported.isEmpty())
        m_launcher->refuseUnsupportedFiles(unsupported, this);
}
