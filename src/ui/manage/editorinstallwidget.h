#ifndef EDITORINSTALLWIDGET_H
#define EDITORINSTALLWIDGET_H

#include <QWidget>

class PackageManager;
class ProcessLauncher;

namespace Ui {
class EditorInstallWidget;
}

// The install control of the management page: a button that opens the list
// of a hidden combo box with the versions on offer.
class EditorInstallWidget : public QWidget
{
    Q_OBJECT

public:
    explicit EditorInstallWidget(QWidget *parent = nullptr);
    ~EditorInstallWidget() override;

    void setProcessLauncher(ProcessLauncher *launcher);
    void rebuildVersionCombo();

public slots:
    void clicked();
    void activated(int index);
    void refreshButtonClicked();
    void installationConfirmed();

private:
    Ui::EditorInstallWidget *ui;
    ProcessLauncher *m_launcher = nullptr;
    PackageManager *m_packageManager = nullptr;
};

#endif // EDITORINSTALLWIDGET_H
