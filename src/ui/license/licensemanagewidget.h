#ifndef LICENSEMANAGEWIDGET_H
#define LICENSEMANAGEWIDGET_H

#include <QWidget>

class ProcessLauncher;

namespace Ui {
class LicenseManageWidget;
}

// The licence page. Licences are bought in the maker's online store and
// registered and released through the maker's licence service, not here:
// the page says so, leads to the store, and shows nothing that the launcher
// does not know.
class LicenseManageWidget : public QWidget
{
    Q_OBJECT

public:
    explicit LicenseManageWidget(QWidget *parent = nullptr);
    ~LicenseManageWidget() override;

    void setProcessLauncher(ProcessLauncher *launcher);

public slots:
    // Opens the maker's online store in the system's browser.
    void openOnlineStore();

private:
    Ui::LicenseManageWidget *ui;
    ProcessLauncher *m_launcher = nullptr;
};

#endif // LICENSEMANAGEWIDGET_H
