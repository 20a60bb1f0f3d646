#ifndef RECORDSCHANGE_H
#define RECORDSCHANGE_H

#include "editorinfo.h"

#include <QCoreApplication>
#include <QList>

// What an installer or uninstaller did, as the uninstall records tell it:
// the editor versions that came and went between a reading before the
// program ran and one after. The records are the truth; a program's exit
// code is not.
class RecordsChange
{
    Q_DECLARE_TR_FUNCTIONS(PackageManager)

public:
    RecordsChange() = default;
    RecordsChange(const QList<EditorInfo> &before, const QList<EditorInfo> &after);

    bool isEmpty() const { return m_added.isEmpty() && m_removed.isEmpty(); }
    // Whether that version (type, edition and number) is among those that came.
    bool hasAdded(const ApplVersion &version) const;
    // What changed, as a line for the management page; empty when nothing did.
    QString getNote() const;
    // The same for the log, untranslated.
    QString describe() const;

private:
    QList<EditorInfo> m_added;
    QList<EditorInfo> m_removed;
};

#endif // RECORDSCHANGE_H
