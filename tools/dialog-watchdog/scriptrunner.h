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
//   click NAME            click a widget found by object name ("a/b": b inside a;
//                         "a#2": the second visible one of that name)
//   press NAME BUTTON     press a mouse button ("left", "right") on it, no release
//   pick TEXT             choose the entry with that text in the open menu or
//                         combo box list, as with the keyboard
//   dblclick NAME ROW     double-click row ROW of an item view
//   rows NAME FILE        write the rows of an item view to FILE, a line each (tool tip,
//                         else text, else the texts of the labels of the row's widget)
//   icon NAME PATH        succeed when the button shows the icon at PATH (":/icons/...")
//   hold / release        keep message boxes open for a screenshot, or answer them again
//   answer BUTTON         answer the open message box with that button ("Yes", "No", "Ok")
//   close                 close every top-level window, as the window's close button does
//
// A step that opens a modal dialog or a menu returns only when it closes; the
// later steps run inside its loop meanwhile, so they can act on it.
//
//   settle                wait until every such step has returned, so that
//                         what follows sees the end of the flow it started
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
    int m_running = 0; // steps that have not returned yet
};

#endif // SCRIPTRUNNER_H
