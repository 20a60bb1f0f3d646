#ifndef BASEOBJECT_H
#define BASEOBJECT_H

#include <QString>

// The house way of reporting: an operation returns a bool and leaves its words
// here for the caller to log. Nothing clears the texts, so an old error stays
// beside a newer success.
class BaseObject
{
public:
    QString getInfoText() const { return m_infoText; }
    QString getErrorText() const { return m_errorText; }

protected:
    QString m_infoText;
    QString m_errorText;
};

#endif // BASEOBJECT_H
