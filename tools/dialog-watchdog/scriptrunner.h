#ifndef SCRIPTRUNNER_H
#define SCRIPTRUNNER_H

#include <QDeadlineTimer>
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
//   waitrow NAME ROW TEXT wait until row ROW of an item view shows TEXT (as "rows" writes it)
//   shot FILE             save what the windows cover of the screen, as the user sees it, as PNG
//   grab NAME FILE        save one widget, found by object name, as PNG
//   click NAME            click a widget found by object name ("a/b": b inside a;
//                         "a#2": the second visible one of that name)
//   press NAME BUTTON     press a mouse button ("left", "right") on it, no release
//   pick TEXT             choose the entry with that text in the open menu or
//                         combo box list, as with the keyboard
//   dblclick NAME ROW     double-click row ROW of an item view
//   menu NAME ROW         open the context menu of row ROW of an item view, as a right click does
//   type NAME TEXT        type the text into a widget (a filter field), key by key
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
// Each step appends {"step", "ok"} to ZANMIR_TEST_DIALOG_LOG once it has
// ended, or when the program exits during it. A step that fails (no such
// widget; a wait that a minute did not end) is recorded and the script goes
// on, so a step with no line never ran.
class ScriptRunner : public QObject
{
    Q_OBJECT

public:
    ScriptRunner(const QString &script, QObject *parent);

    static bool holdsMessageBoxes();

private slots:
    void next();

private:
    // Far beyond what a window or a flow takes even on a loaded machine; only
    // a step that will never end reaches it.
    static constexpr int kWaitMsecs = 60000;

    static bool isWaitStep(const QString &command);
    // Whether what a waiting step waits for is there.
    bool arrived(const QString &command, const QString &argument) const;
    bool run(const QString &command, const QString &argument);
    static void record(const QString &step, bool ok);
    static void recordStepsUnderWay();
    QWidget *find(const QString &path) const;

    QStringList m_steps;
    QDeadlineTimer m_waitDeadline; // of the step that waits now
};

#endif // SCRIPTRUNNER_H
