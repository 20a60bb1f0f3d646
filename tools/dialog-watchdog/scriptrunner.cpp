#include "scriptrunner.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QApplication>
#include <QContextMenuEvent>
#include <QCursor>
#include <QFile>
#include <QIcon>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QMetaEnum>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <cstdlib>

namespace {

bool g_holdBoxes = false;
// The steps whose action has not returned yet, the innermost last.
QStringList g_underWay;

// Visible widgets, the active modal window's first, then every top-level's.
QList<QWidget *> searchRoots()
{
    QList<QWidget *> roots;
    if (QWidget *modal = QApplication::activeModalWidget())
        roots.append(modal);
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        if (window->isVisible() && !roots.contains(window))
            roots.append(window);
    }
    return roots;
}

QWidget *findIn(QWidget *root, const QString &name)
{
    // "NAME#N" counts the visible ones, in the order they were made.
    const int hash = name.lastIndexOf(QLatin1Char('#'));
    const int nth = hash > 0 ? name.mid(hash + 1).toInt() : 0;
    const QString plain = nth > 0 ? name.left(hash) : name;
    if (root->objectName() == plain && nth <= 1)
        return root;
    const QList<QWidget *> children = root->findChildren<QWidget *>(plain);
    int seen = 0;
    for (QWidget *child : children) {
        if (child->isVisible() && ++seen >= nth)
            return child;
    }
    return nth > 1 ? nullptr : children.value(0);
}

// A row's tool tip, else its text, else the texts of the labels of the
// widget shown in it (a tile, a version row).
QString rowText(const QAbstractItemView *view, const QModelIndex &index)
{
    QString text = index.data(Qt::ToolTipRole).toString();
    if (text.isEmpty())
        text = index.data().toString();
    const QWidget *cell = view->indexWidget(index);
    if (!text.isEmpty() || !cell)
        return text;
    QStringList labels;
    const QList<QLabel *> children = cell->findChildren<QLabel *>();
    for (const QLabel *label : children) {
        const QString shown = label->toolTip().isEmpty() ? label->text() : label->toolTip();
        if (!shown.isEmpty())
            labels.append(shown);
    }
    return labels.join(QLatin1Char(' '));
}

// Chooses an entry of the open menu or combo box list as a user does with
// the keyboard: make it current, then Return.
bool pickEntry(const QString &text)
{
    QWidget *popup = QApplication::activePopupWidget();
    if (auto *menu = qobject_cast<QMenu *>(popup)) {
        const QList<QAction *> actions = menu->actions();
        for (QAction *action : actions) {
            if (action->text() == text) {
                menu->setActiveAction(action);
                QTest::keyClick(menu, Qt::Key_Return);
                return true;
            }
        }
        return false;
    }
    auto *view = popup ? popup->findChild<QAbstractItemView *>() : nullptr;
    for (int row = 0; view && view->model() && row < view->model()->rowCount(); ++row) {
        const QModelIndex index = view->model()->index(row, 0);
        if (index.data().toString() == text) {
            view->setCurrentIndex(index);
            QTest::keyClick(view, Qt::Key_Return);
            return true;
        }
    }
    return false;
}

} // namespace

ScriptRunner::ScriptRunner(const QString &script, QObject *parent)
    : QObject(parent)
    , m_steps(script.split(QLatin1Char(';'), Qt::SkipEmptyParts))
    , m_waitDeadline(kWaitMsecs)
{
    std::atexit(recordStepsUnderWay);
    QTimer::singleShot(0, this, SLOT(next()));
}

bool ScriptRunner::holdsMessageBoxes()
{
    return g_holdBoxes;
}

QWidget *ScriptRunner::find(const QString &path) const
{
    const QStringList names = path.split(QLatin1Char('/'));
    for (QWidget *root : searchRoots()) {
        QWidget *found = root;
        for (const QString &name : names) {
            found = found ? findIn(found, name) : nullptr;
        }
        if (found)
            return found;
    }
    return nullptr;
}

void ScriptRunner::record(const QString &step, bool ok)
{
    const QString logPath = qEnvironmentVariable("ZANMIR_TEST_DIALOG_LOG");
    QFile log(logPath);
    if (logPath.isEmpty() || !log.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered))
        return;
    QJsonObject entry;
    entry.insert(QStringLiteral("step"), step);
    entry.insert(QStringLiteral("ok"), ok);
    log.write(QJsonDocument(entry).toJson(QJsonDocument::Compact) + '\n');
}

void ScriptRunner::recordStepsUnderWay()
{
    // The program ends while they run (the update window's Cancel ends it at
    // once): what they did, they did.
    for (const QString &step : qAsConst(g_underWay))
        record(step, true);
    g_underWay.clear();
}

bool ScriptRunner::isWaitStep(const QString &command)
{
    static const QStringList kWaits { QStringLiteral("window"), QStringLiteral("waitfile"), QStringLiteral("waitrow"),
        QStringLiteral("settle") };
    return kWaits.contains(command);
}

bool ScriptRunner::arrived(const QString &command, const QString &argument) const
{
    if (command == QLatin1String("window")) {
        const QWidgetList windows = QApplication::topLevelWidgets();
        return std::any_of(windows.cbegin(), windows.cend(),
            [&argument](const QWidget *window) { return window->isVisible() && window->windowTitle() == argument; });
    }
    if (command == QLatin1String("waitfile"))
        return QFile::exists(argument);
    if (command == QLatin1String("waitrow")) {
        auto *view = qobject_cast<QAbstractItemView *>(find(argument.section(QLatin1Char(' '), 0, 0)));
        const QModelIndex index = view && view->model()
            ? view->model()->index(argument.section(QLatin1Char(' '), 1, 1).toInt(), 0)
            : QModelIndex();
        return index.isValid() && rowText(view, index) == argument.section(QLatin1Char(' '), 2);
    }
    return g_underWay.isEmpty(); // settle
}

void ScriptRunner::next()
{
    while (!m_steps.isEmpty()) {
        const QString step = m_steps.first().trimmed();
        const QString command = step.section(QLatin1Char(' '), 0, 0);
        const QString argument = step.section(QLatin1Char(' '), 1);
        if (isWaitStep(command)) {
            const bool there = arrived(command, argument);
            if (!there && !m_waitDeadline.hasExpired()) {
                QTimer::singleShot(50, this, SLOT(next()));
                return;
            }
            // What has not come by the deadline is not coming: the step fails
            // and the script goes on, so that the run ends by itself.
            m_steps.removeFirst();
            m_waitDeadline = QDeadlineTimer(kWaitMsecs);
            record(step, there);
            continue;
        }
        m_steps.removeFirst();
        m_waitDeadline = QDeadlineTimer(kWaitMsecs);
        if (command == QLatin1String("wait")) {
            record(step, true);
            QTimer::singleShot(argument.toInt(), this, SLOT(next()));
            return;
        }
        // The next step is due before this one runs: a click that opens a
        // dialog returns only when the dialog closes, and the steps go on
        // inside the dialog's own loop meanwhile.
        QTimer::singleShot(100, this, SLOT(next()));
        g_underWay.append(step);
        const bool ok = run(command, argument);
        g_underWay.removeLast();
        record(step, ok);
        return;
    }
}

bool ScriptRunner::run(const QString &command, const QString &argument)
{
    const QString first = argument.section(QLatin1Char(' '), 0, 0);
    const QString second = argument.section(QLatin1Char(' '), 1);
    if (command == QLatin1String("shot")) {
        // The part of the screen that the windows cover, dialogs included.
        QRect area;
        for (QWidget *window : QApplication::topLevelWidgets()) {
            if (window->isVisible())
                area |= window->frameGeometry();
        }
        QScreen *screen = QGuiApplication::primaryScreen();
        return screen && !area.isEmpty()
            && screen->grabWindow(0, area.x(), area.y(), area.width(), area.height()).save(argument, "PNG");
    }
    if (command == QLatin1String("hold") || command == QLatin1String("release")) {
        g_holdBoxes = command == QLatin1String("hold");
        return true;
    }
    if (command == QLatin1String("answer")) {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        const QMetaObject &meta = QMessageBox::staticMetaObject;
        const QMetaEnum buttons = meta.enumerator(meta.indexOfEnumerator("StandardButtons"));
        bool known = false;
        const int wanted = buttons.keyToValue(argument.toLatin1().constData(), &known);
        QAbstractButton *button = box && known ? box->button(QMessageBox::StandardButton(wanted)) : nullptr;
        if (button)
            button->click();
        return button;
    }
    if (command == QLatin1String("pick"))
        return pickEntry(argument);
    if (command == QLatin1String("close")) {
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget *window : windows) {
            if (window->isVisible())
                window->close();
        }
        return true;
    }
    QWidget *widget = find(command == QLatin1String("click") ? argument : first);
    if (!widget)
        return false;
    // A scroll area's own frame ignores the mouse: a press lands on its viewport.
    QWidget *pressed = widget;
    if (auto *area = qobject_cast<QAbstractScrollArea *>(widget))
        pressed = area->viewport();
    if (command == QLatin1String("grab"))
        return widget->grab().save(second, "PNG");
    if (command == QLatin1String("icon")) {
        // Compared as drawn at the button's icon size, the way it is shown.
        auto *button = qobject_cast<QAbstractButton *>(widget);
        const QSize size = button ? button->iconSize() : QSize();
        return button && button->icon().pixmap(size).toImage() == QIcon(second).pixmap(size).toImage();
    }
    if (command == QLatin1String("click")) {
        if (auto *button = qobject_cast<QAbstractButton *>(widget))
            button->click();
        else
            QTest::mouseClick(pressed, Qt::LeftButton);
        return true;
    }
    if (command == QLatin1String("press")) {
        // The pointer goes there first, so that a menu opens where the press was.
        QCursor::setPos(pressed->mapToGlobal(pressed->rect().center()));
        QTest::mousePress(pressed, second == QLatin1String("right") ? Qt::RightButton : Qt::LeftButton);
        return true;
    }
    if (command == QLatin1String("menu")) {
        auto *view = qobject_cast<QAbstractItemView *>(widget);
        const QModelIndex index = view && view->model() ? view->model()->index(second.toInt(), 0) : QModelIndex();
        if (!index.isValid())
            return false;
        const QPoint centre = view->visualRect(index).center();
        QCursor::setPos(view->viewport()->mapToGlobal(centre));
        QContextMenuEvent request(QContextMenuEvent::Mouse, centre, view->viewport()->mapToGlobal(centre));
        QApplication::sendEvent(view->viewport(), &request);
        return true;
    }
    if (command == QLatin1String("type")) {
        widget->setFocus(Qt::OtherFocusReason);
        QTest::keyClicks(widget, second);
        return true;
    }
    if (command == QLatin1String("rows")) {
        auto *view = qobject_cast<QAbstractItemView *>(widget);
        QFile file(second);
        if (!view || !file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return false;
        for (int row = 0; view->model() && row < view->model()->rowCount(); ++row) {
            file.write(rowText(view, view->model()->index(row, 0)).toUtf8() + '\n');
        }
        return true;
    }
    if (command == QLatin1String("dblclick")) {
        auto *view = qobject_cast<QAbstractItemView *>(widget);
        if (!view || !view->model())
            return false;
        const QModelIndex index = view->model()->index(second.toInt(), 0);
        if (!index.isValid())
            return false;
        const QPoint centre = view->visualRect(index).center();
        QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, centre);
        QTest::mouseDClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, centre);
        return true;
    }
    return false;
}
