#ifndef MENUBUTTONWIDGET_H
#define MENUBUTTONWIDGET_H

#include <QHash>
#include <QIcon>
#include <QString>
#include <QWidget>

class ProcessLauncher;

namespace Ui {
class MenuButtonWidget;
}

// The strip of buttons at the top of the main window. It turns presses into
// one text-keyed signal and shows the update badges by swapping the icons of
// Information, HowToUse and ManageAppl. It knows nothing of pages.
class MenuButtonWidget : public QWidget
{
    Q_OBJECT

public:
    explicit MenuButtonWidget(QWidget *parent = nullptr);
    ~MenuButtonWidget() override;

    void setProcessLauncher(ProcessLauncher *launcher);

signals:
    void signalButtonClicked(const QString &message);

public slots:
    void clickedButtonHome();
    void clickedButtonInfo();
    void clickedButtonHelp();
    void clickedButtonAppl();
    void clickedButtonLicense();
    void clickedButtonPref();
    void clickedButtonRefresh();
    void noticedUptodateVersion(bool foundNewerRevision, bool foundNewerVersion);
    void noticedUptodateWebVersion(bool newsWebRenewed, bool howtoWebRenewed);

private:
    void applyIcons();
    // Each icon file is read once: the badges come and go.
    QIcon icon(const QString &path);

    Ui::MenuButtonWidget *ui;
    ProcessLauncher *m_launcher = nullptr;
    // The badge state of the three buttons that carry one.
    QString m_infoBadge;
    QString m_helpBadge;
    QString m_applBadge;
    // What Home, Information, HowToUse, ManageAppl and ManageLicense show.
    QString m_homeIcon;
    QString m_infoIcon;
    QString m_helpIcon;
    QString m_applIcon;
    QString m_licenseIcon;
    QHash<QString, QIcon> m_icons;
};

#endif // MENUBUTTONWIDGET_H
