#include "statusiconview.h"

StatusIconView::StatusIconView(QWidget *parent)
    : IconView(parent)
{
    setLineWidth(0);
}

StatusIconView::~StatusIconView() = default;
