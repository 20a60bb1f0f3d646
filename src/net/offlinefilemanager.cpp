#include "offlinefilemanager.h"

#include "jsonfilereader.h"
#include "textfilewriter.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <limits>

static const QString kOfflineFiles = QStringLiteral("offlinefiles");
static const QString kSerialNo = QStringLiteral("serial_no");
static const QString kUrl = QStringLiteral("url");

static QJsonObject toJsonObject(const OfflineFileInfo &info)
{
    QJsonObject object;
    object.insert(kSerialNo, info.getSerialNo());
    object.insert(kUrl, info.getUrl());
    return object;
}

OfflineFileManager::OfflineFileManager(const QString &indexFilePath, QObject *parent)
    : QObject(parent)
    , m_indexFilePath(indexFilePath)
{ }

OfflineFileManager::~OfflineFileManager() = default;

bool OfflineFileManager::createIndexFile()
{
    // The entry of serial 0 stays in the index for good: it is what gives the
    // first real page the number 1.
    QJsonArray entries;
    entries.append(toJsonObject(OfflineFileInfo(0, QString())));
    QJsonObject root;
    root.insert(kOfflineFiles, entries);

    TextFileWriter writer(m_indexFilePath);
    if (!writer.writeNew(QString::fromUtf8(QJsonDocument(root).toJson()))) {
        // Reported as info, not as error: the caller logs the info text here.
        m_infoText = QStringLiteral("Failed to create OfflineFileInfo: %1").arg(writer.getErrorText());
        return false;
    }
    m_infoText = QStringLiteral("OfflineFileInfo is created: %1").arg(m_indexFilePath);
    return true;
}

bool OfflineFileManager::readIndexFile()
{
    JsonFileReader reader(m_indexFilePath);
    if (!reader.parse()) {
        // Wraps the previous error text rather than the reader's words; the
        // caller rebuilds the index anyway.
        m_errorText = QStringLiteral("Failed to read OfflineFileInfo: %1").arg(m_errorText);
        return false;
    }
    m_infoText = QStringLiteral("OfflineFileInfo is read: %1").arg(m_indexFilePath);
    m_document = reader.getDocument();

    m_infoList.clear();
    const QJsonArray entries = m_document.object().value(kOfflineFiles).toArray();
    for (const QJsonValue &entry : entries) {
        const QJsonObject object = entry.toObject();
        m_infoList.append(OfflineFileInfo(object.value(kSerialNo).toInt(), object.value(kUrl).toString()));
    }
    return true;
}

bool OfflineFileManager::updateIndexFile()
{
    TextFileWriter writer(m_indexFilePath);
    if (!writer.replace(QString::fromUtf8(m_document.toJson()))) {
        m_infoText = QStringLiteral("Failed to update OfflineFileInfo: %1").arg(writer.getErrorText());
        return false;
    }
    m_infoText = QStringLiteral("OfflineFileInfo is updated: %1").arg(m_indexFilePath);
    return true;
}

OfflineFileInfo OfflineFileManager::findInfo(const QString &url) const
{
    for (const OfflineFileInfo &info : m_infoList) {
        if (info.getUrl() == url)
            return info;
    }
    return OfflineFileInfo(0, url);
}

OfflineFileInfo OfflineFileManager::addInfo(const OfflineFileInfo &info)
{
    std::stable_sort(m_infoList.begin(), m_infoList.end(),
        [](const OfflineFileInfo &a, const OfflineFileInfo &b) { return a.getSerialNo() > b.getSerialNo(); });

    // An index with an empty array is never written by this class, but a file
    // edited by hand can hold one. The entry of serial 0 is then put back
    // first, so the index regains its usual shape and numbering starts at 1
    // as in a new store.
    if (m_infoList.isEmpty())
        m_infoList.append(OfflineFileInfo(0, QString()));

    // At the top of the range the numbers in use are closed up to 1..n, so
    // the next one fits again; the page files move with them.
    if (m_infoList.first().getSerialNo() == std::numeric_limits<int>::max())
        renumber();

    OfflineFileInfo stored = info;
    stored.setSerialNo(m_infoList.first().getSerialNo() + 1);
    m_infoList.append(stored);

    // Only the array is rebuilt, so other top-level keys survive. The file
    // is written by updateIndexFile.
    QJsonArray entries;
    for (const OfflineFileInfo &entry : qAsConst(m_infoList))
        entries.append(toJsonObject(entry));
    QJsonObject root = m_document.object();
    root.insert(kOfflineFiles, entries);
    m_document.setObject(root);

    m_infoText = QStringLiteral("OfflineFileInfo is created: serial_no=%1").arg(stored.getSerialNo());
    return stored;
}

QString OfflineFileManager::pageFileName(const QString &folder, int serialNo)
{
    return QStringLiteral("%1/%2.html").arg(folder, QStringLiteral("%1").arg(serialNo, 8, 10, QLatin1Char('0')));
}

void OfflineFileManager::renumber()
{
    // The list is sorted highest first; numbering from the lowest keeps the
    // order. Entries below 1 have no page file and keep their number.
    const QString folder = QFileInfo(m_indexFilePath).absolutePath();
    QList<int> pages;
    for (int i = m_infoList.size() - 1; i >= 0; --i) {
        if (m_infoList.at(i).getSerialNo() >= 1)
            pages.append(i);
    }

    // Through names of their own first: a number given out may still be
    // the old number of a later page, and an index edited by hand may name
    // one page twice.
    QHash<int, QString> parked;
    for (int i : qAsConst(pages)) {
        const int oldSerial = m_infoList.at(i).getSerialNo();
        const QString oldName = pageFileName(folder, oldSerial);
        const QString parkedName = oldName + QStringLiteral(".renumbered");
        if (parked.contains(oldSerial) || !QFile::exists(oldName))
            continue;
        QFile::remove(parkedName);
        if (QFile::rename(oldName, parkedName))
            parked.insert(oldSerial, parkedName);
    }
    int next = 1;
    QHash<int, QString> moved;
    for (int i : qAsConst(pages)) {
        const int oldSerial = m_infoList.at(i).getSerialNo();
        const QString newName = pageFileName(folder, next);
        if (moved.contains(oldSerial))
            QFile::copy(moved.value(oldSerial), newName);
        else if (parked.contains(oldSerial) && QFile::rename(parked.value(oldSerial), newName))
            moved.insert(oldSerial, newName);
        m_infoList[i].setSerialNo(next++);
    }
}
