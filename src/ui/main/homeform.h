#ifndef HOMEFORM_H
#define HOMEFORM_H

#include <QString>
#include <QWidget>

class ProcessLauncher;

namespace Ui {
class HomeForm;
}

// The main window: the menu strip above five pages, one visible at a time.
// It also decides when the update catalogue is read again: at set-up, on
// Refresh, after the preferences, and once a day on the refresh timer.
class HomeForm : public QWidget
{
    Q_OBJECT

public:
    explicit HomeForm(QWidget *parent = nullptr);
    ~HomeForm() override;

    // Called once by the entry function, before show().
    void setProcessLauncher(ProcessLauncher *launcher);

public slots:
    void buttonClicked(const QString &message);
    void fireUpdate();

private:
    void hidePages();

    Ui::HomeForm *ui;
    ProcessLauncher *m_launcher = nullptr;
};

#endif // HOMEFORM_H
