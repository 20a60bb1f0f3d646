// Preloaded into the launcher by the end-to-end tests: records every modal
// dialog the process shows and closes it, so that a message box can neither
// hang a test run nor go unnoticed.
//
// Each dialog appends one JSON line to the file that ZANMIR_TEST_DIALOG_LOG
// names: {"icon", "title", "text", "button"} for a message box, {"class",
// "title"} for any other dialog. A message box is answered with the button
// that ZANMIR_TEST_DIALOG_BUTTON names ("Ok", "Yes", "No", ...; default Ok),
// else with its escape button; other dialogs are rejected.
//
// With ZANMIR_TEST_SCRIPT set, a script of steps also drives the windows
// (see scriptrunner.h); other dialogs are then left to the script.
#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMessageBox>
#include <QMetaEnum>
#include <QPointer>
#include <QTimer>

#include "scriptrunner.h"

namespace {

class DialogWatchdog : public QObject
{
    Q_OBJECT

public:
    explicit DialogWatchdog(QObject *parent)
        : QObject(parent)
        , m_logPath(qEnvironmentVariable("ZANMIR_TEST_DIALOG_LOG"))
        , m_answer(qEnvironmentVariable("ZANMIR_TEST_DIALOG_BUTTON", QStringLiteral("Ok")))
        , m_scripted(qEnvironmentVariableIsSet("ZANMIR_TEST_SCRIPT"))
    {
        connect(&m_timer, SIGNAL(timeout()), this, SLOT(poll()));
        m_timer.start(50);
    }

private slots:
    void poll()
    {
        QWidget *modal = QApplication::activeModalWidget();
        if (!modal) {
            // Without a window system the modal stack may stay empty; a
            // visible dialog is then found among the top-level widgets.
            const QWidgetList widgets = QApplication::topLevelWidgets();
            for (QWidget *widget : widgets) {
                if (widget->isVisible() && qobject_cast<QDialog *>(widget)) {
                    modal = widget;
                    break;
                }
            }
        }
        if (!modal || modal == m_lastClosed)
            return;
        if (auto *box = qobject_cast<QMessageBox *>(modal)) {
            if (!ScriptRunner::holdsMessageBoxes())
                closeMessageBox(box);
        } else if (auto *dialog = qobject_cast<QDialog *>(modal)) {
            if (!m_scripted)
                closeDialog(dialog);
        }
    }

private:
    void closeMessageBox(QMessageBox *box)
    {
        QAbstractButton *button = nullptr;
        const QMetaObject &meta = QMessageBox::staticMetaObject;
        const QMetaEnum buttons = meta.enumerator(meta.indexOfEnumerator("StandardButtons"));
        bool known = false;
        const int wanted = buttons.keyToValue(m_answer.toLatin1().constData(), &known);
        if (known)
            button = box->button(QMessageBox::StandardButton(wanted));
        if (!button)
            button = box->escapeButton();
        if (!button && !box->buttons().isEmpty())
            button = box->buttons().constFirst();

        QJsonObject record;
        const QMetaEnum icons = meta.enumerator(meta.indexOfEnumerator("Icon"));
        const QString icon = QString::fromLatin1(icons.valueToKey(box->icon())).toLower();
        record.insert(QStringLiteral("icon"), box->icon() == QMessageBox::NoIcon ? QStringLiteral("none") : icon);
        record.insert(QStringLiteral("title"), box->windowTitle());
        record.insert(QStringLiteral("text"), box->text());
        record.insert(QStringLiteral("button"),
            button ? QString::fromLatin1(buttons.valueToKey(box->standardButton(button))) : QString());
        append(record);
        m_lastClosed = box;
        if (button)
            button->click();
        else
            box->done(0);
    }

    void closeDialog(QDialog *dialog)
    {
        QJsonObject record;
        record.insert(QStringLiteral("class"), QString::fromLatin1(dialog->metaObject()->className()));
        record.insert(QStringLiteral("title"), dialog->windowTitle());
        append(record);
        m_lastClosed = dialog;
        dialog->reject();
    }

    void append(const QJsonObject &record) const
    {
        if (m_logPath.isEmpty())
            return;
        QFile log(m_logPath);
        if (log.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered))
            log.write(QJsonDocument(record).toJson(QJsonDocument::Compact) + '\n');
    }

    QString m_logPath;
    QString m_answer;
    bool m_scripted;
    QTimer m_timer;
    // A dialog that closes takes a moment to leave the modal stack; it must
    // not be recorded twice.
    QPointer<QWidget> m_lastClosed;
};

void startDialogWatchdog()
{
    // Programs that the launcher starts must not inherit the preload.
    qunsetenv("LD_PRELOAD");
    if (!qobject_cast<QApplication *>(QCoreApplication::instance()))
        return;
    new DialogWatchdog(QCoreApplication::instance());
    const QString script = qEnvironmentVariable("ZANMIR_TEST_SCRIPT");
    if (!script.isEmpty())
        new ScriptRunner(script, QCoreApplication::instance());
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(startDialogWatchdog)

#include "dialogwatchdog.moc"
