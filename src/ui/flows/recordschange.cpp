#include "recordschange.h"

#include <algorithm>

namespace {

// The entries of one reading that the other lacks.
QList<EditorInfo> missingFrom(const QList<EditorInfo> &entries, const QList<EditorInfo> &other)
{
    QList<EditorInfo> missing;
    for (const EditorInfo &entry : entries) {
        if (std::none_of(other.cbegin(), other.cend(),
                [&entry](const EditorInfo &candidate) { return candidate.isSameVersion(entry); }))
            missing.append(entry);
    }
    return missing;
}

QString listed(const QList<EditorInfo> &entries)
{
    QStringList texts;
    for (const EditorInfo &entry : entries)
        texts.append(QStringLiteral("%1 %2 %3").arg(entry.getApplType(), entry.getEdition(), entry.getVersion()));
    return texts.join(QStringLiteral(", "));
}

} // namespace

RecordsChange::RecordsChange(const QList<EditorInfo> &before, const QList<EditorInfo> &after)
    : m_added(missingFrom(after, before))
    , m_removed(missingFrom(before, after))
{ }

bool RecordsChange::hasAdded(const ApplVersion &version) const
{
    return std::any_of(
        m_added.cbegin(), m_added.cend(), [&version](const EditorInfo &added) { return added.isSameVersion(version); });
}

QString RecordsChange::getNote() const
{
    // One version in place of another of the same edition: an update.
    if (m_added.size() == 1 && m_removed.size() == 1 && m_added.first().isSameApplication(m_removed.first())) {
        return tr("%1 ver %2 was updated to ver %3.")
            .arg(m_removed.first().getApplName(), m_removed.first().getDisplayVersion(),
                m_added.first().getDisplayVersion());
    }
    QStringList sentences;
    for (const EditorInfo &added : m_added)
        sentences.append(tr("%1 ver %2 was installed.").arg(added.getApplName(), added.getDisplayVersion()));
    for (const EditorInfo &removed : m_removed)
        sentences.append(tr("%1 ver %2 was uninstalled.").arg(removed.getApplName(), removed.getDisplayVersion()));
    return sentences.join(QLatin1Char(' '));
}

QString RecordsChange::describe() const
{
    if (isEmpty())
        return QStringLiteral("uninstall records: no change");
    QStringList parts;
    if (!m_added.isEmpty())
        parts.append(QStringLiteral("added %1").arg(listed(m_added)));
    if (!m_removed.isEmpty())
        parts.append(QStringLiteral("removed %1").arg(listed(m_removed)));
    return QStringLiteral("uninstall records: %1").arg(parts.join(QStringLiteral("; ")));
}
