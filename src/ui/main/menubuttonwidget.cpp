#include "menubuttonwidget.h"
#include "ui_menubuttonwidget.h"

#include "processlauncher.h"
#include "screeninfo.h"

namespace {

const QString kHomeIcon = QStringLiteral(":/icons/home.png");
const QString kInfoIcon = QStringLiteral(":/icons/info.png");
const QString kHelpIcon = QStringLiteral(":/icons/help.png");
const QString kApplIcon = QStringLiteral(":/icons/appl.png");
const QString kLicenseIcon = QStringLiteral(":/icons/license.png");

} // namespace

MenuButtonWidget::MenuButtonWidget(QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::MenuButtonWidget)
    , m_infoBadge(kInfoIcon)
    , m_helpBadge(kHelpIcon)
    , m_applBadge(kApplIcon)
    , m_homeIcon(kHomeIcon)
    , m_infoIcon(m_infoBadge)
    , m_helpIcon(m_helpBadge)
    , m_applIcon(m_applBadge)
    , m_licenseIcon(kLicenseIcon)
{
    ui->setupUi(this);
}

MenuButtonWidget::~MenuButtonWidget()
{
    delete ui;
}

void MenuButtonWidget::setProcessLauncher(ProcessLauncher *launcher)
{
    m_launcher = launcher;
    m_infoBadge = kInfoIcon;
    m_helpBadge = kHelpIcon;
    m_applBadge = kApplIcon;
    // Before any connection: the icons are applied and nobody hears of it.
    clickedButtonHome();

    connect(ui->buttonHome, SIGNAL(clicked()), this, SLOT(clickedButtonHome()));
    connect(ui->buttonInfo, SIGNAL(clicked()), this, SLOT(clickedButtonInfo()));
    connect(ui->buttonHelp, SIGNAL(clicked()), this, SLOT(clickedButtonHelp()));
    connect(ui->buttonAppl, SIGNAL(clicked()), this, SLOT(clickedButtonAppl()));
    connect(ui->buttonLicense, SIGNAL(clicked()), this, SLOT(clickedButtonLicense()));
    connect(ui->buttonPref, SIGNAL(clicked()), this, SLOT(clickedButtonPref()));
    connect(ui->buttonRefresh, SIGNAL(clicked()), this, SLOT(clickedButtonRefresh()));
    connect(m_launcher->getScreenInfo(), SIGNAL(signalUptodateVersionNoticed(bool, bool)), this,
        SLOT(noticedUptodateVersion(bool, bool)));
    connect(m_launcher->getScreenInfo(), SIGNAL(signalUptodateWebVersionNoticed(bool, bool)), this,
        SLOT(noticedUptodateWebVersion(bool, bool)));
}

void MenuButtonWidget::applyIcons()
{
    // Preference and Refresh keep the icons of the form for good.
    ui->buttonHome->setIcon(icon(m_homeIcon));
    ui->buttonInfo->setIcon(icon(m_infoIcon));
    ui->buttonHelp->setIcon(icon(m_helpIcon));
    ui->buttonAppl->setIcon(icon(m_applIcon));
    ui->buttonLicense->setIcon(icon(m_licenseIcon));
}

QIcon MenuButtonWidget::icon(const QString &path)
{
    auto found = m_icons.find(path);
    if (found == m_icons.end())
        found = m_icons.insert(path, QIcon(path));
    return found.value();
}

void MenuButtonWidget::clickedButtonHome()
{
    applyIcons();
    emit signalButtonClicked(QStringLiteral("Home"));
}

void MenuButtonWidget::clickedButtonInfo()
{
    // Opening the page takes its badge away at once.
    if (m_infoBadge != kInfoIcon)
        m_infoBadge = kInfoIcon;
    m_infoIcon = kInfoIcon;
    applyIcons();
    emit signalButtonClicked(QStringLiteral("Info"));
}

void MenuButtonWidget::clickedButtonHelp()
{
    if (m_helpBadge != kHelpIcon)
        m_helpBadge = kHelpIcon;
    m_helpIcon = kHelpIcon;
    applyIcons();
    emit signalButtonClicked(QStringLiteral("Help"));
}

void MenuButtonWidget::clickedButtonAppl()
{
    // The appl badge stays until the installed versions change.
    applyIcons();
    emit signalButtonClicked(QStringLiteral("Appl"));
}

void MenuButtonWidget::clickedButtonLicense()
{
    applyIcons();
    emit signalButtonClicked(QStringLiteral("License"));
}

void MenuButtonWidget::clickedButtonPref()
{
    emit signalButtonClicked(QStringLiteral("Pref"));
}

void MenuButtonWidget::clickedButtonRefresh()
{
    emit signalButtonClicked(QStringLiteral("Refresh"));
}

void MenuButtonWidget::noticedUptodateVersion(bool foundNewerRevision, bool foundNewerVersion)
{
    // A newer revision of an installed series beats a newer series.
    if (foundNewerRevision)
        m_applBadge = QStringLiteral(":/icons/appl_update_yellow.png");
    else if (foundNewerVersion)
        m_applBadge = QStringLiteral(":/icons/appl_update_red.png");
    else
        m_applBadge = kApplIcon;
    m_applIcon = m_applBadge;
    applyIcons();
}

void MenuButtonWidget::noticedUptodateWebVersion(bool newsWebRenewed, bool howtoWebRenewed)
{
    m_infoBadge = newsWebRenewed ? QStringLiteral(":/icons/newsweb_update_yellow.png") : kInfoIcon;
    m_helpBadge = howtoWebRenewed ? QStringLiteral(":/icons/howtoweb_update_yellow.png") : kHelpIcon;
    m_infoIcon = m_infoBadge;
    m_helpIcon = m_helpBadge;
    applyIcons();
}
