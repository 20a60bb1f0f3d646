#include "jsonrepair.h"

#include <QJsonParseError>
#include <QList>

#include <algorithm>

namespace {

// A place where an object or array has just been closed, and the brackets
// that would close everything still open there.
struct CutPoint
{
    int end;
    QByteArray closers;
};

QJsonDocument parse(const QByteArray &text, int *errorOffset = nullptr)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (errorOffset)
        *errorOffset = error.error == QJsonParseError::NoError ? -1 : error.offset;
    return error.error == QJsonParseError::NoError ? document : QJsonDocument();
}

// The places, before limit, where an object or array ends. The walk stops
// at the first bracket that closes what is not open, since nothing after it
// can be trusted.
QList<CutPoint> cutPoints(const QByteArray &text, int limit)
{
    QList<CutPoint> points;
    QByteArray open;
    bool inString = false;
    bool escaped = false;
    for (int i = 0; i < limit; ++i) {
        const char c = text.at(i);
        if (inString) {
            if (escaped)
                escaped = false;
            else if (c == '\\')
                escaped = true;
            else if (c == '"')
                inString = false;
            continue;
        }
        if (c == '"') {
            inString = true;
        } else if (c == '{' || c == '[') {
            open.append(c == '{' ? '}' : ']');
        } else if (c == '}' || c == ']') {
            if (open.isEmpty() || open.back() != c)
                break;
            open.chop(1);
            QByteArray closers = open;
            std::reverse(closers.begin(), closers.end());
            points.append({ i + 1, closers });
        }
    }
    return points;
}

} // namespace

QJsonDocument JsonRepair::repair(const QByteArray &text)
{
    QByteArray trimmed = text;
    while (!trimmed.isEmpty() && (trimmed.back() == '\0' || QChar::isSpace(static_cast<uchar>(trimmed.back()))))
        trimmed.chop(1);

    int errorOffset = -1;
    const QJsonDocument whole = parse(trimmed, &errorOffset);
    if (!whole.isNull() || trimmed.isEmpty())
        return whole;

    // The parser stops at or just past the damage; everything before that
    // is sound. The latest cut that parses keeps the most.
    const QList<CutPoint> points = cutPoints(trimmed, qBound(0, errorOffset, trimmed.size()));
    for (auto it = points.crbegin(); it != points.crend(); ++it) {
        const QJsonDocument document = parse(trimmed.left(it->end) + it->closers);
        if (!document.isNull())
            return document;
    }
    return QJsonDocument();
}
