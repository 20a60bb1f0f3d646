#ifndef BENCHPICTURE_H
#define BENCHPICTURE_H

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>

// A project's picture about as large as a real one, encoded as PNG: a
// 640 by 480 scene with gradients, a little different for each index.
inline QByteArray benchPicture(int index)
{
    QImage image(640, 480, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient sky(0, 0, 640, 480);
    sky.setColorAt(0, QColor::fromHsv(index * 37 % 360, 120, 230));
    sky.setColorAt(1, QColor::fromHsv(index * 53 % 360, 200, 90));
    painter.fillRect(image.rect(), sky);
    for (int i = 0; i < 40; ++i)
        painter.fillRect(QRect((i * 97 + index) % 600, (i * 61) % 440, 40, 40), QColor::fromHsv(i * 9, 180, 200));
    painter.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    return buffer.open(QIODevice::WriteOnly) && image.save(&buffer, "PNG") ? bytes : QByteArray();
}

#endif // BENCHPICTURE_H
