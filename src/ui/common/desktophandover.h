#ifndef DESKTOPHANDOVER_H
#define DESKTOPHANDOVER_H

#include <QString>

#include <functional>

class QUrl;

// The one way from the launcher to the desktop's programs. Only http, https
// and mailto addresses are handed over: a page could otherwise give the
// desktop a local file or program to start, or a handler of any scheme. The
// one local address is a folder that the launcher itself names, shown in the
// file manager; nothing a page hands over takes that way.
class DesktopHandOver
{
public:
    using Opener = std::function<bool(const QUrl &url)>;

    static bool isAllowed(const QUrl &url);
    // True when the address was allowed and the desktop took it.
    static bool open(const QUrl &url);
    // Shows an existing folder, given by its absolute path, in the file
    // manager. False for anything else.
    static bool showFolder(const QString &folderPath);
    // The words for a refused address in the log.
    static QString refusalText(const QUrl &url);
    // Takes the place of the desktop, so that tests see the addresses
    // instead of a browser starting; an empty opener gives the desktop back.
    static void setOpener(const Opener &opener);
};

#endif // DESKTOPHANDOVER_H
