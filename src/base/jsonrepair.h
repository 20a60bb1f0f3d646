#ifndef JSONREPAIR_H
#define JSONREPAIR_H

#include <QByteArray>
#include <QJsonDocument>

// Salvages what is still readable of a damaged JSON text, such as a state
// file that a crash or a full disk cut short. Trailing NUL bytes and white
// space are dropped; a text that then still does not parse is cut back to
// its last complete object or array before the damage, and the brackets
// open at that point are closed.
class JsonRepair
{
public:
    // The repaired document; a null document when nothing could be saved.
    static QJsonDocument repair(const QByteArray &text);
};

#endif // JSONREPAIR_H
