#include "piniconview.h"

#include "piniconwidget.h"

#include <QMouseEvent>

PinIconView::PinIconView(QWidget *parent)
    : IconView(parent)
{ }

PinIconView::~PinIconView() = default;

void PinIconView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && m_owner)
        m_owner->togglePinned();
}
