#ifndef WEBADDRESS_H
#define WEBADDRESS_H

#include <QString>

class QUrl;

// Plain questions about the web addresses that the launcher is handed: by its
// deployment, by the update catalogue and by the pages it shows.
class WebAddress
{
public:
    // True when the text begins with "http://" or "https://", in any letter case.
    static bool isWebAddress(const QString &text);
    // This machine: 127.0.0.0/8, ::1 or "localhost". Any other spelling of
    // these counts as another machine, which errs on the safe side.
    static bool isLoopbackHost(const QString &host);
    // Plain http to another machine: whoever sits on the way reads and
    // rewrites what comes back.
    static bool isExposed(const QUrl &url);
    // The text for a log line: without a password, and cut short when it is
    // very long.
    static QString forLog(const QString &text);
};

#endif // WEBADDRESS_H
