#include "piniconwidget.h"
#include "ui_piniconwidget.h"

PinIconWidget::PinIconWidget(QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::PinIconWidget)
{
    ui->setupUi(this);
    ui->pinIconView->setOwner(this);
    ui->noPinIconView->setOwner(this);
    ui->pinIconView->loadImage(QStringLiteral(":/icons/pin.png"));
    ui->noPinIconView->loadImage(QStringLiteral(":/icons/nopin.png"));
    ui->pinIconView->hide();
    ui->noPinIconView->show();
}

PinIconWidget::~PinIconWidget()
{
    delete ui;
}

void PinIconWidget::setPinned(bool pinned)
{
    ui->pinIconView->setVisible(pinned);
    ui->noPinIconView->setVisible(!pinned);
}

void PinIconWidget::togglePinned()
{
    // isVisibleTo: the row may not be on the screen itself.
    const bool pinned = !ui->pinIconView->isVisibleTo(this);
    setPinned(pinned);
    emit signalIconPinned(pinned);
}
