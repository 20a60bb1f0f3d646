#ifndef PROJECTOPENER_H
#define PROJECTOPENER_H

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

class ProcessLauncher;
class QMimeData;
class QWidget;

// Opens the projects that the user hands the window, from the file dialog
// of "Open project..." or dropped on it, exactly as a double click in the
// file manager opens them: the same choice of editor, the same boxes, a
// history entry. Its boxes belong to the widget given.
class ProjectOpener : public QObject
{
    Q_OBJECT

public:
    // The file dialog: given the folder to show first, the project chosen,
    // or nothing.
    using Chooser = std::function<QString(QWidget *parent, const QString &folder)>;

    ProjectOpener(ProcessLauncher *launcher, QWidget *parent);

    // The local files that a drag carries; a drag without any is not taken.
    static QStringList droppedFiles(const QMimeData *data);
    // The first project file among these; the files of no project form,
    // folders among them, are set aside. Further project files are passed over.
    static QString projectAmong(const QStringList &files, QStringList &unsupported);
    // Tests stand in for the file dialog; an empty chooser gives it back.
    static void setChooser(const Chooser &chooser);

public slots:
    // "Open project...": the dialog opens in the folder of the latest project.
    void chooseAndOpen();
    // A drop: the first project file is opened, then the files that are no
    // project are named in the box for an unsupported file.
    void openFiles(const QStringList &files);

private:
    void open(const QString &path);

    ProcessLauncher *m_launcher;
    QWidget *m_parent;
};

#endif // PROJECTOPENER_H
