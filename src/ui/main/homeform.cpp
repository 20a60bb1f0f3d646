#include "homeform.h"
#include "ui_homeform.h"

#include "preferencedialog.h"
#include "processlauncher.h"
#include "projectopener.h"
#include "stylesheet.h"
#include "timerstopper.h"
#include "webpage.h"

#include <QDropEvent>
#include <QWindow>

namespace {

// The refresh timer ticks every five minutes; the notifier lets one tick a
// day through.
const int kRefreshInterval = 300000;

} // namespace

HomeForm::HomeForm(QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::HomeForm)
{
    ui->setupUi(this);
    StyleSheet::applyTo(this);
    setAcceptDrops(true);
}

HomeForm::~HomeForm()
{
    delete ui;
}

void HomeForm::hidePages()
{
    ui->widgetHome->hide();
    ui->scrollAreaInfo->hide();
    ui->scrollAreaHelp->hide();
    ui->widgetInstalledEditor->hide();
    ui->widgetLicense->hide();
}

void HomeForm::setProcessLauncher(ProcessLauncher *launcher)
{
    m_launcher = launcher;
    m_projectOpener = new ProjectOpener(m_launcher, this);
    hidePages();

    // The menu strip with its badges and the home page make the first frame;
    // the badges come from the catalogue read at start, until the catalogue
    // has been read again. The rows of the hidden management page follow.
    ui->widgetMenuButton->setProcessLauncher(m_launcher);
    m_launcher->noticeWebVersions();
    ui->widgetHome->setProcessLauncher(m_launcher);
    ui->widgetHome->holdUntilPainted();
    ui->widgetHome->refreshRecentProjects();
    ui->widgetInstalledEditor->setProcessLauncher(m_launcher);
    ui->widgetInstalledEditor->noticeVersions();
    ui->widgetLicense->setProcessLauncher(m_launcher);
    ui->widgetHome->show();
    // The menu answers from the first frame on, also while the catalogue is
    // being read again at the end of the set-up.
    connect(ui->widgetMenuButton, SIGNAL(signalButtonClicked(QString)), this, SLOT(buttonClicked(QString)));
    m_setUpPending = true;
    finishSetUpWhenPainted();
}

void HomeForm::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    finishSetUpWhenPainted();
}

void HomeForm::finishSetUpWhenPainted()
{
    if (!m_setUpPending || !isVisible() || !windowHandle())
        return;
    if (windowHandle()->isExposed()) {
        m_setUpPending = false;
        QMetaObject::invokeMethod(this, "finishSetUp", Qt::QueuedConnection);
    } else {
        windowHandle()->installEventFilter(this);
    }
}

bool HomeForm::eventFilter(QObject *watched, QEvent *event)
{
    // This comes before the window paints what was exposed; queued, the
    // rest of the set-up runs once that paint has reached the screen.
    if (watched == windowHandle() && event->type() == QEvent::Expose) {
        windowHandle()->removeEventFilter(this);
        finishSetUpWhenPainted();
    }
    return QWidget::eventFilter(watched, event);
}

void HomeForm::dragEnterEvent(QDragEnterEvent *event)
{
    if (m_projectOpener && !ProjectOpener::droppedFiles(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void HomeForm::dropEvent(QDropEvent *event)
{
    const QStringList files = ProjectOpener::droppedFiles(event->mimeData());
    event->acceptProposedAction();
    // After the drop has ended: the program it came from waits for that
    // while a box is open.
    QMetaObject::invokeMethod(m_projectOpener, "openFiles", Qt::QueuedConnection, Q_ARG(QStringList, files));
}

void HomeForm::finishSetUp()
{
    ui->widgetHome->finishSetUp();
    ui->widgetInstalledEditor->buildRows();
    // The pages are loaded once; Refresh does not reload them.
    makeWebPages();
    m_infoPage->setProcessLauncher(m_launcher);
    m_infoPage->setUrl(m_launcher->getWebUrl(QStringLiteral("newsweb")));
    m_helpPage->setProcessLauncher(m_launcher);
    m_helpPage->setUrl(m_launcher->getWebUrl(QStringLiteral("howtoweb")));

    m_launcher->refreshUpdateState();

    connect(m_launcher->getRefreshTimer(), SIGNAL(timeout()), this, SLOT(fireUpdate()));
    m_launcher->getRefreshTimer()->start(kRefreshInterval);
    m_launcher->getUpdateNotifier()->restart();
    m_setUp = true;
}

void HomeForm::makeWebPages()
{
    if (m_infoPage)
        return;
    m_infoPage = WebPage::make();
    m_infoPage->setObjectName(QStringLiteral("widgetInfo"));
    ui->scrollAreaInfo->setWidget(m_infoPage);
    m_helpPage = WebPage::make();
    m_helpPage->setObjectName(QStringLiteral("widgetHelp"));
    ui->scrollAreaHelp->setWidget(m_helpPage);
}

void HomeForm::buttonClicked(const QString &message)
{
    // A dialog opened from here runs its own event loop; the daily check
    // must not fall inside it.
    const TimerStopper stopper(m_launcher->getUpdateNotifier());

    if (message == QLatin1String("Pref")) {
        PreferenceDialog dialog(this);
        dialog.setProcessLauncher(m_launcher);
        dialog.exec();
        // The list of installable versions may follow a changed preference.
        m_launcher->refreshUpdateState();
        return;
    }
    if (message == QLatin1String("Refresh")) {
        m_launcher->refreshUpdateState();
        return;
    }

    hidePages();
    if (message == QLatin1String("Home")) {
        ui->widgetHome->show();
    } else if (message == QLatin1String("Info")) {
        // Opening the page marks its stamp as seen, server or not.
        m_launcher->saveWebVersion(QStringLiteral("newsweb"));
        ui->scrollAreaInfo->show();
    } else if (message == QLatin1String("Help")) {
        m_launcher->saveWebVersion(QStringLiteral("howtoweb"));
        ui->scrollAreaHelp->show();
    } else if (message == QLatin1String("Appl")) {
        ui->widgetInstalledEditor->show();
    } else if (message == QLatin1String("License")) {
        ui->widgetLicense->show();
    }
    // Any other key leaves no page visible, on purpose: there is no fallback.
}

void HomeForm::fireUpdate()
{
    if (!m_launcher->getUpdateNotifier()->isDue())
        return;
    buttonClicked(QStringLiteral("Refresh"));
    m_launcher->getUpdateNotifier()->restart();
}
