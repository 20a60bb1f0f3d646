#include "stylesheet.h"

#include <QFile>
#include <QTextStream>
#include <QWidget>

bool StyleSheet::applyTo(QWidget *window, const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    window->setStyleSheet(stream.readAll());
    return true;
}
