#include "homewidget.h"
#include "ui_homewidget.h"

HomeWidget::HomeWidget(QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::HomeWidget)
{
    ui->setupUi(this);
}

HomeWidget::~HomeWidget()
{
    delete ui;
}

void HomeWidget::setProcessLauncher(ProcessLauncher *launcher)
{
    m_launcher = launcher;
    ui->launchButtonWidget->setProcessLauncher(m_launcher);
    ui->recentUsedWidget->setProcessLauncher(m_launcher);
    ui->launchButtonWidget->rebuildButtons();
}

void HomeWidget::refreshRecentProjects()
{
    ui->recentUsedWidget->setFileDesc();
}
