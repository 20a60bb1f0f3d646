#ifndef HOMEWIDGET_H
#define HOMEWIDGET_H

#include <QWidget>

class ProcessLauncher;
class ProjectOpener;

namespace Ui {
class HomeWidget;
}

// The launch page: a band of tiles, one per installed editor, above the
// recent projects. "Open project..." opens any project file; the filter
// above the cards (Ctrl+F) narrows them, and Escape clears it.
class HomeWidget : public QWidget
{
    Q_OBJECT

public:
    explicit HomeWidget(QWidget *parent = nullptr);
    ~HomeWidget() override;

    void setProcessLauncher(ProcessLauncher *launcher);
    void refreshRecentProjects();
    // The main window's first frame waits for neither the cards' pictures
    // nor the filter's clear button, whose icon is looked up in the desktop's
    // icon theme: after holdUntilPainted both come with finishSetUp.
    void holdUntilPainted();
    void finishSetUp();

private slots:
    void focusFilter();
    void clearFilter();

private:
    Ui::HomeWidget *ui;
    ProcessLauncher *m_launcher = nullptr;
    ProjectOpener *m_opener = nullptr;
};

#endif // HOMEWIDGET_H
