#include "homewidget.h"
#include "ui_homewidget.h"

#include "projectopener.h"

#include <QShortcut>

HomeWidget::HomeWidget(QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::HomeWidget)
{
    ui->setupUi(this);
    // The tiles are the stop of the band, not the area they scroll in.
    ui->scrollAreaEditors->setFocusPolicy(Qt::NoFocus);
    ui->launchButtonWidget->setTabNeighbours(ui->buttonOpenProject, ui->lineEditFilter);
    QWidget::setTabOrder(ui->lineEditFilter, ui->recentUsedWidget->getFocusWidget());

    // Ctrl+F while the page is shown, wherever the focus is in the window;
    // Escape from the filter or the cards.
    auto *find = new QShortcut(QKeySequence::Find, this);
    connect(find, SIGNAL(activated()), this, SLOT(focusFilter()));
    auto *clear = new QShortcut(QKeySequence(Qt::Key_Escape), this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
    connect(clear, SIGNAL(activated()), this, SLOT(clearFilter()));
    connect(ui->lineEditFilter, SIGNAL(textChanged(QString)), ui->recentUsedWidget, SLOT(setFilterText(QString)));
}

HomeWidget::~HomeWidget()
{
    delete ui;
}

void HomeWidget::setProcessLauncher(ProcessLauncher *launcher)
{
    m_launcher = launcher;
    m_opener = new ProjectOpener(m_launcher, this);
    connect(ui->buttonOpenProject, SIGNAL(clicked()), m_opener, SLOT(chooseAndOpen()));
    ui->launchButtonWidget->setProcessLauncher(m_launcher);
    ui->recentUsedWidget->setProcessLauncher(m_launcher);
    ui->launchButtonWidget->rebuildButtons();
}

void HomeWidget::refreshRecentProjects()
{
    ui->recentUsedWidget->setFileDesc();
}

void HomeWidget::holdUntilPainted()
{
    ui->recentUsedWidget->setPicturesHeld(true);
}

void HomeWidget::finishSetUp()
{
    ui->lineEditFilter->setClearButtonEnabled(true);
    ui->recentUsedWidget->setPicturesHeld(false);
}

void HomeWidget::focusFilter()
{
    ui->lineEditFilter->setFocus(Qt::ShortcutFocusReason);
    ui->lineEditFilter->selectAll();
}

void HomeWidget::clearFilter()
{
    ui->lineEditFilter->clear();
}
