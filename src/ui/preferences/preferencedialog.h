#ifndef PREFERENCEDIALOG_H
#define PREFERENCEDIALOG_H

#include <QDialog>

class ProcessLauncher;

namespace Ui {
class PreferenceDialog;
}

// The preferences: whether every installable version is offered, the
// language, and the launcher's version. The two Apply buttons, disabled
// while nothing is pending, are the dialog's memory of a change.
class PreferenceDialog : public QDialog
{
    Q_OBJECT

public:
    explicit PreferenceDialog(QWidget *parent = nullptr);
    ~PreferenceDialog() override;

    void setProcessLauncher(ProcessLauncher *launcher);

public slots:
    void okClicked();
    void cancelClicked();
    bool applyClicked();
    void currentTabChanged();

private:
    Ui::PreferenceDialog *ui;
    ProcessLauncher *m_launcher = nullptr;
};

#endif // PREFERENCEDIALOG_H
