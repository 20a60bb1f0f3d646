#include "elidedlabel.h"

#include <QFontMetrics>
#include <QLabel>

void setElidedText(QLabel *label, const QString &text)
{
    const QString shown = label->fontMetrics().elidedText(text, Qt::ElideRight, label->width());
    label->setText(shown);
    label->setToolTip(shown == text ? QString() : text);
}
