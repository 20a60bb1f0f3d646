#include "webbrowserwidget.h"
#include "ui_webbrowserwidget.h"

#include "httpaccessutility.h"
#include "processlauncher.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QWebFrame>
#include <QWebSettings>

WebBrowserWidget::WebBrowserWidget(QWidget *parent)
    : WebPage(parent)
    , ui(new Ui::WebBrowserWidget)
{
    ui->setupUi(this);
}

WebBrowserWidget::~WebBrowserWidget()
{
    delete ui;
}

void WebBrowserWidget::setProcessLauncher(ProcessLauncher *launcher)
{
    m_launcher = launcher;
    ui->webView->setLogFunction([launcher](const QString &message) { launcher->writeLog(message); });
    connect(ui->webView, SIGNAL(linkClicked(QUrl)), this, SLOT(linkClicked(QUrl)));
    connect(ui->webView, SIGNAL(loadFinished(bool)), this, SLOT(loadFinished(bool)));
    connect(ui->webView->page()->networkAccessManager(), SIGNAL(sslErrors(QNetworkReply *, QList<QSslError>)), this,
        SLOT(certificateRefused(QNetworkReply *, QList<QSslError>)));
}

void WebBrowserWidget::setUrl(const QString &url)
{
    m_currentUrl = url;
    ui->webView->load(QUrl(url, QUrl::TolerantMode));
    QWebSettings *settings = ui->webView->settings();
    settings->setAttribute(QWebSettings::JavascriptEnabled, true);
    settings->setAttribute(QWebSettings::JavascriptCanOpenWindows, true);
    ui->webView->page()->setLinkDelegationPolicy(QWebPage::DelegateAllLinks);
}

void WebBrowserWidget::linkClicked(const QUrl &url)
{
    // A plain link leaves the page where it is; the clicked address is what
    // the next finished load is stored under.
    m_currentUrl = url.toString();
    m_launcher->writeLog(QStringLiteral("WebBrowserWidget::linkClicked: %1").arg(m_currentUrl));
}

void WebBrowserWidget::loadFinished(bool b)
{
    if (b) {
        m_launcher->writeLog(QStringLiteral("WebBrowserWidget::loadFinished: HTML loaded: [%1]").arg(m_currentUrl));
        m_launcher->saveOfflineFile(m_currentUrl, ui->webView->page()->mainFrame()->toHtml());
        return;
    }
    m_launcher->writeLog(QStringLiteral("WebBrowserWidget::loadFinished: Failed to load HTML: [%1]").arg(m_currentUrl));
    // The copy, or an empty page when there is none. Showing it ends in a
    // successful load of its own, which stores what is shown under the
    // same address.
    ui->webView->setHtml(m_launcher->restoreOfflineFile(m_currentUrl), QUrl());
}

void WebBrowserWidget::certificateRefused(QNetworkReply *reply, const QList<QSslError> &errors)
{
    // Not ignored: the load fails, and the kept copy is shown.
    m_launcher->writeLog(QStringLiteral("WebBrowserWidget::certificateRefused: [%1] %2")
                             .arg(reply->url().toString(), HTTPAccessUtility::certificateErrorText(errors)));
}
