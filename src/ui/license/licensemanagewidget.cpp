#include "licensemanagewidget.h"
#include "ui_licensemanagewidget.h"

#include "desktophandover.h"
#include "processlauncher.h"

#include <QUrl>

LicenseManageWidget::LicenseManageWidget(QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::LicenseManageWidget)
{
    ui->setupUi(this);
}

LicenseManageWidget::~LicenseManageWidget()
{
    delete ui;
}

void LicenseManageWidget::setProcessLauncher(ProcessLauncher *launcher)
{
    m_launcher = launcher;
    connect(ui->buttonOnlineStore, SIGNAL(clicked()), this, SLOT(openOnlineStore()));
}

void LicenseManageWidget::openOnlineStore()
{
    const QString url = m_launcher->getWebUrl(QStringLiteral("onlinestrore"));
    m_launcher->writeLog(QStringLiteral("LicenseManageWidget::openOnlineStore: %1").arg(url));
    DesktopHandOver::open(QUrl(url, QUrl::TolerantMode));
}
