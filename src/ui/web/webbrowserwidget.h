#ifndef WEBBROWSERWIDGET_H
#define WEBBROWSERWIDGET_H

#include "webpage.h"

#include <QList>
#include <QSslError>
#include <QString>
#include <QUrl>

class ProcessLauncher;
class QNetworkReply;

namespace Ui {
class WebBrowserWidget;
}

// Shows one of the maker's pages. Each page that loads is kept in the
// offline store, and a page that fails to load is shown from that copy, so
// that the pages still work without a network.
class WebBrowserWidget : public WebPage
{
    Q_OBJECT

public:
    explicit WebBrowserWidget(QWidget *parent = nullptr);
    ~WebBrowserWidget() override;

    void setProcessLauncher(ProcessLauncher *launcher) override;
    void setUrl(const QString &url) override;

public slots:
    void linkClicked(const QUrl &url);
    void loadFinished(bool b);
    void certificateRefused(QNetworkReply *reply, const QList<QSslError> &errors);

private:
    Ui::WebBrowserWidget *ui;
    ProcessLauncher *m_launcher = nullptr;
    QString m_currentUrl;
};

#endif // WEBBROWSERWIDGET_H
