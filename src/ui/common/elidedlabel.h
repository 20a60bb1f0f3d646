#ifndef ELIDEDLABEL_H
#define ELIDEDLABEL_H

#include <QString>

class QLabel;

// Puts a text into a fixed-size label, cut at the end with an ellipsis when
// the font in use is wider than the one the form was drawn for; the whole
// text is then the tool tip.
void setElidedText(QLabel *label, const QString &text);

#endif // ELIDEDLABEL_H
