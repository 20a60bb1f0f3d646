#include "versiondescwidget.h"
#include "ui_versiondescwidget.h"

#include "elidedlabel.h"
#include "packagemanager.h"
#include "processlauncher.h"
#include "refreshhold.h"

#include <QButtonGroup>
#include <QCursor>
#include <QMenu>
#include <QMouseEvent>

VersionDescWidget::VersionDescWidget(QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::VersionDescWidget)
{
    ui->setupUi(this);
    // Alone in its frame, a radio button unchecks on a click like a check
    // box; in a group of its own it stays checked, as the default row's must.
    (new QButtonGroup(this))->addButton(ui->radioDefaultEditor);
    m_default = ui->radioDefaultEditor->isChecked();
}

VersionDescWidget::~VersionDescWidget()
{
    delete ui;
}

void VersionDescWidget::setProcessLauncher(ProcessLauncher *launcher)
{
    m_launcher = launcher;
    m_packageManager = new PackageManager(this);
    m_packageManager->setProcessLauncher(m_launcher);
    ui->updateStatus->setProcessLauncher(m_launcher);
    connect(ui->pinIcon, SIGNAL(signalIconPinned(bool)), this, SLOT(iconPinned(bool)));
    connect(ui->radioDefaultEditor, SIGNAL(clicked(bool)), this, SLOT(radioClicked(bool)));
}

void VersionDescWidget::setEditorInfo(const EditorInfo &editor)
{
    m_packageManager->setEditorInfo(editor);
    ui->updateStatus->setEditorInfo(editor);
    setElidedText(ui->labelApplType, editor.getApplName());
    ui->labelApplVersion->setText(editor.getDisplayVersion());
    // setChecked sends no clicked(): showing the state is no request.
    ui->radioDefaultEditor->setChecked(m_packageManager->isCurrentEditor());
    ui->pinIcon->setPinned(m_packageManager->isPinnedVersion());
}

void VersionDescWidget::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton && event->button() != Qt::RightButton)
        return;
    // The region reaches beyond the row's own size; it is kept so. Unsigned
    // differences keep a press left of or above it out as well.
    const unsigned dx = static_cast<unsigned>(event->pos().x() - 25);
    const unsigned dy = static_cast<unsigned>(event->pos().y() - 10);
    if (dx > 200 || dy > 100)
        return;

    // The flows that the menu starts run inside its loop, this row's slot
    // included: nothing may rebuild the rows meanwhile.
    const RefreshHold hold(m_launcher);
    QMenu menu;
    const auto addEntry = [this, &menu](const QString &text, const char *slot) {
        auto *action = new QAction(text, this);
        connect(action, SIGNAL(triggered()), this, slot);
        menu.addAction(action);
    };
    addEntry(tr("Add to frequently used"), SLOT(actionPinned()));
    addEntry(tr("Make default on startup"), SLOT(actionDefault()));
    addEntry(tr("Update to recent version"), SLOT(actionUpdate()));
    addEntry(tr("Show update histories"), SLOT(actionHistory()));
    addEntry(tr("Uninstall"), SLOT(actionUninstall()));
    menu.exec(QCursor::pos());
}

void VersionDescWidget::askForDefault(bool checked)
{
    if (checked && !m_default) {
        m_packageManager->setCurrentEditor(true);
        m_default = true;
    } else {
        m_packageManager->setCurrentEditor(false);
        m_default = false;
    }
}

void VersionDescWidget::actionPinned()
{
    // For a pinned version this takes the pin away, whatever the entry says.
    ui->pinIcon->togglePinned();
}

void VersionDescWidget::actionDefault()
{
    // A radio button alone in its group refuses to be unchecked; for the
    // flip the group is not exclusive for a moment.
    QRadioButton *radio = ui->radioDefaultEditor;
    radio->group()->setExclusive(false);
    radio->setChecked(!radio->isChecked());
    radio->group()->setExclusive(true);
    askForDefault(radio->isChecked());
}

void VersionDescWidget::radioClicked(bool checked)
{
    // Rows are made anew after each change, so a click on the default row's
    // radio button asks again to make it default and it stays so; only the
    // menu entry takes the default away.
    askForDefault(checked);
}

void VersionDescWidget::actionUpdate()
{
    m_packageManager->updateEditor();
}

void VersionDescWidget::actionHistory()
{
    m_packageManager->showUpdateHistories();
}

void VersionDescWidget::actionUninstall()
{
    m_packageManager->uninstallEditor();
}

void VersionDescWidget::iconPinned(bool pinned)
{
    m_packageManager->setPinnedVersion(pinned);
}
