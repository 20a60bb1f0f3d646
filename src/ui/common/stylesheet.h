#ifndef STYLESHEET_H
#define STYLESHEET_H

#include <QString>

class QWidget;

// The launcher's look: one dark style sheet compiled into the program, applied
// to each top-level window; the windows under it inherit it.
class StyleSheet
{
public:
    static QString defaultPath() { return QStringLiteral(":/stylesheet/dark.qss"); }

    // Reads the sheet and applies it to the window. A sheet that does not
    // open is passed over: the window stays unstyled and works all the same.
    static bool applyTo(QWidget *window, const QString &path = defaultPath());
};

#endif // STYLESHEET_H
