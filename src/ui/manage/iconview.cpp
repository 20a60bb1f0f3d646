#include "iconview.h"

#include <QPainter>

IconView::IconView(QWidget *parent)
    : QGraphicsView(parent)
{
    setAttribute(Qt::WA_TranslucentBackground);
}

IconView::~IconView() = default;

void IconView::loadImage(const QString &path)
{
    QImage image;
    if (!image.load(path))
        return;
    m_image = image.convertToFormat(QImage::Format_ARGB32);
    m_rect = QRect(0, 0, m_image.width(), m_image.height());
}

void IconView::paintEvent(QPaintEvent *)
{
    QPainter painter(viewport());
    painter.drawImage(0, 0, m_image.scaled(viewport()->size(), Qt::KeepAspectRatio, Qt::SmoothTransformation));
}
