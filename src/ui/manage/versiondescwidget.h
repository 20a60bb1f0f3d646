#ifndef VERSIONDESCWIDGET_H
#define VERSIONDESCWIDGET_H

#include "editorinfo.h"

#include <QWidget>

class PackageManager;
class ProcessLauncher;

namespace Ui {
class VersionDescWidget;
}

// One installed version on the management page: name and version, the pin
// star, the default radio button and the update mark. A press on it opens a
// menu with the same actions and more.
class VersionDescWidget : public QWidget
{
    Q_OBJECT

public:
    explicit VersionDescWidget(QWidget *parent = nullptr);
    ~VersionDescWidget() override;

    void setProcessLauncher(ProcessLauncher *launcher);
    void setEditorInfo(const EditorInfo &editor);

public slots:
    void actionPinned();
    void actionDefault();
    void actionUpdate();
    void actionHistory();
    void actionUninstall();
    void radioClicked(bool checked);
    void iconPinned(bool pinned);

protected:
    void mousePressEvent(QMouseEvent *event) override;

private:
    void askForDefault(bool checked);

    Ui::VersionDescWidget *ui;
    ProcessLauncher *m_launcher = nullptr;
    PackageManager *m_packageManager = nullptr;
    // What this row last asked for; every row starts without it, whatever
    // its radio button shows.
    bool m_default;
};

#endif // VERSIONDESCWIDGET_H
