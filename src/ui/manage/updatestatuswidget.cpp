#include "updatestatuswidget.h"
#include "ui_updatestatuswidget.h"

#include "applupdater.h"
#include "editorinfo.h"
#include "processlauncher.h"

UpdateStatusWidget::UpdateStatusWidget(QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::UpdateStatusWidget)
{
    ui->setupUi(this);
    // "checked" means an update exists; "nocheck" is a see-through picture.
    ui->checkedIcon->loadImage(QStringLiteral(":/icons/checked.png"));
    ui->noCheckIcon->loadImage(QStringLiteral(":/icons/nocheck.png"));
    ui->noCheckIcon->show();
    ui->checkedIcon->hide();
}

UpdateStatusWidget::~UpdateStatusWidget()
{
    delete ui;
}

void UpdateStatusWidget::setProcessLauncher(ProcessLauncher *launcher)
{
    m_launcher = launcher;
}

void UpdateStatusWidget::setEditorInfo(const EditorInfo &editor)
{
    const bool updateOnOffer = !m_launcher->getApplUpdater()->findUpdateFor(editor).isEmpty();
    ui->checkedIcon->setVisible(updateOnOffer);
    ui->noCheckIcon->setVisible(!updateOnOffer);
}
