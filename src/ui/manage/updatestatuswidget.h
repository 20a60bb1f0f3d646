#ifndef UPDATESTATUSWIDGET_H
#define UPDATESTATUSWIDGET_H

#include <QWidget>

class EditorInfo;
class ProcessLauncher;

namespace Ui {
class UpdateStatusWidget;
}

// The mark of a version row that says a newer revision of its series is on
// offer; where there is none, the spot stays empty.
class UpdateStatusWidget : public QWidget
{
    Q_OBJECT

public:
    explicit UpdateStatusWidget(QWidget *parent = nullptr);
    ~UpdateStatusWidget() override;

    void setProcessLauncher(ProcessLauncher *launcher);
    void setEditorInfo(const EditorInfo &editor);

private:
    Ui::UpdateStatusWidget *ui;
    ProcessLauncher *m_launcher = nullptr;
};

#endif // UPDATESTATUSWIDGET_H
