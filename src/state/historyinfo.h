#ifndef HISTORYINFO_H
#define HISTORYINFO_H

#include "applversion.h"

#include <QJsonObject>

// One entry of the recent-project list. The serial number is a logical clock:
// the highest is the most recently opened project, 0 one not yet stored.
class HistoryInfo : public ApplVersion
{
    Q_OBJECT

public:
    explicit HistoryInfo(QObject *parent = nullptr);
    HistoryInfo(const QString &applType, const QString &edition, const QString &version, const QString &openFilePath,
        QObject *parent = nullptr);
    // error is set when type, edition, version, timestamp or path is empty.
    HistoryInfo(const QJsonObject &json, bool *error, QObject *parent = nullptr);
    HistoryInfo(const HistoryInfo &other);
    ~HistoryInfo() override;

    HistoryInfo &operator=(const HistoryInfo &other);

    int getSerialNo() const { return m_serialNo; }
    void setSerialNo(int serialNo) { m_serialNo = serialNo; }
    QString getTimestamp() const { return m_timestamp; }
    void setTimestamp(const QString &timestamp) { m_timestamp = timestamp; }
    QString getOpenFilePath() const { return m_openFilePath; }

    QJsonObject toJson() const;

private:
    int m_serialNo = 0;
    QString m_timestamp;
    QString m_openFilePath;
};

#endif // HISTORYINFO_H
