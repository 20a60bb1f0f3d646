#include "appllaunchwidget.h"
#include "ui_appllaunchwidget.h"

#include "elidedlabel.h"
#include "processlauncher.h"

#include <QMessageBox>
#include <QMouseEvent>

ApplLaunchWidget::ApplLaunchWidget(QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::ApplLaunchWidget)
{
    ui->setupUi(this);
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
    m_applName = editor.getApplName();
    m_displayVersion = editor.getDisplayVersion();
    m_path = editor.getPath();
    setElidedText(ui->labelApplType, m_applName);
    ui->labelApplVersion->setText(m_displayVersion);
}

void ApplLaunchWidget::mousePressEvent(QMouseEvent *event)
{
    // The left button, at the press; every other button does nothing.
    if (event->button() != Qt::LeftButton)
        return;
    // The tile keeps its own copy of the record, so the editor may have gone
    // since the tiles were made.
    if (!m_launcher->fileExists(m_path)) {
        QMessageBox::warning(this, QCoreApplication::applicationName(),
            tr("Editor can not be found.\nPlease add an editor on the application screen.\n\n%1").arg(m_displayVersion),
            QMessageBox::Ok);
        return;
    }
    if (!m_launcher->openFileByApplication(QString(), m_path)) {
        QMessageBox::warning(this, QCoreApplication::applicationName(),
            tr("Failed to start the editor ver. %1.\n\nPlease install the editor of the displayed version again.")
                .arg(m_displayVersion),
            QMessageBox::Ok);
    }
}
