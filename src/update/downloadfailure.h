#ifndef DOWNLOADFAILURE_H
#define DOWNLOADFAILURE_H

#include <QString>

// Why a download stopped, with the figures that a user needs to hear about
// it. The download dialog puts it into words; the technical text goes to the
// log.
struct DownloadFailure
{
    enum Kind {
        None,
        FileNameRefused, // the catalogue's file name would reach outside "Downloads"
        HttpStatus, // the server answered with an error status
        Unreachable, // no connection to the server could be made
        ConnectionLost, // the transfer broke off after bytesDone of bytesTotal
        Stalled, // nothing arrived for stallSeconds
        TooManyRedirects,
        InsecureRedirect, // from https to http
        BadAnswer, // an answer that does not fit the request, such as more bytes than announced
        NoSpace, // bytesNeeded more than bytesFree in "Downloads"
        WriteFailed, // detail holds the system's reason
        ChecksumMismatch,
        SecureConnection, // the encrypted connection could not be set up
        UntrustedCertificate, // the server's certificate failed verification; detail holds why
        Other // detail holds the network layer's text
    };

    Kind kind = None;
    int httpStatus = 0;
    qint64 bytesDone = 0;
    qint64 bytesTotal = -1; // -1 while the length is unknown
    qint64 bytesNeeded = 0;
    qint64 bytesFree = 0;
    int stallSeconds = 0;
    QString detail;
};

#endif // DOWNLOADFAILURE_H
