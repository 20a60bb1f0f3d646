#ifndef HTTPACCESSUTILITY_H
#define HTTPACCESSUTILITY_H

#include <QNetworkAccessManager>
#include <QObject>
#include <QString>

// Fetches one URL into a string and waits for it, in a nested event loop.
// Redirects are not followed. A transfer that has not finished within the
// deployment's HTTP time-out is ended as a failure.
class HTTPAccessUtility : public QObject
{
    Q_OBJECT

public:
    explicit HTTPAccessUtility(QObject *parent = nullptr);
    ~HTTPAccessUtility() override;

    // True when the transfer ended without a network error; the body then
    // holds the answer. On false the body keeps what it had.
    bool get(const QString &url);

    QString getBody() const { return m_body; }
    int getStatusCode() const { return m_statusCode; }
    QString getErrorText() const { return m_errorText; }

private:
    QNetworkAccessManager m_manager;
    QString m_body;
    int m_statusCode = 0;
    QString m_errorText;
};

#endif // HTTPACCESSUTILITY_H
