#ifndef SCRIPTRUNNER_H
#define SCRIPTRUNNER_H

#include <QObject>
#include <QStringList>

class QWidget;

// Drives the windows of the process it is preloaded into, one step after the
// other, so that the demo and the end-to-end tests can use the real program
// as a user would. Steps are separated by ";":
//
//   window TITLE          wait until a visible window with that title exists
//   wait MS               let the program run for that long
//   waitfile PATH         wait until that file exists (a test's signal to go on)
//   shot FILE             save what the windows cover of the screen, as the user sees it, as PNG
//   grab NAME FILE        save one widget, found by object name, as PNG
//   click NAME            click a widget found by object name ("a/b": b inside a)
//   press NAME BUTTON     press a mouse button ("left", "right") on it, no release
//   dblclick NAME ROW     double-click row ROW of an item view
//   rows NAME FILE        write the rows of an item view to FILE, a line each (tool tip, else text)
//   hold / release        keep message boxes open for a screenshot, or answer them again
//   answer BUTTON         answer the open message box with that button ("Yes", "No", "Ok")
//   close                 close every top-level window, as the window's close button does
//
// A step that opens a modal dialog returns only when the dialog closes; the
// later steps run inside the dialog's loop meanwhile, so they can act on it.
//
// Each step appends {"step", "ok"} to ZANMIR_TEST_DIALOG_LOG. A step that
// fails (no such widget) is recorded and the script goes on.
class ScriptRunner : public QObject
{
    Q_OBJECT

public:
    ScriptRunner(const QString &script, QObject *parent);

    static bool holdsMessageBoxes();

private slots:
    void next();

private:
    bool run(const QString &command, const QString &argument);
    void record(const QString &step, bool ok) const;
    QWidget *find(const QString &path) const;

    QStringList m_steps;
    QString m_waitingForTitle;
};

#endif // SCRIPTRUNNER_H
