#ifndef APPLLAUNCHER_H
#define APPLLAUNCHER_H

#include "logwriter.h"

#include <QApplication>
#include <QString>

// The application object: the target system the launcher runs as, and the
// process log that every part writes through.
class ApplLauncher : public QApplication
{
    Q_OBJECT

public:
    ApplLauncher(int &argc, char **argv);
    ~ApplLauncher() override;

    QString getTargetSystemName() const;
    // Appends one dated line to the log; a line that cannot be written is lost.
    void writeLog(const QString &message);

    // Starts the application with the file and does not wait for it. False,
    // without a message, when the application path names no file.
    bool openFileByApplication(const QString &filePath, const QString &applicationPath);

    // The folder of the launcher's own files (manager file, log, offline store).
    static QString launcherDataFolder();
    // G + "/Vorlix", where the applications catalogue lies.
    static QString vorlixDataFolder();

protected:
    QString m_targetSystemName;
    LogWriter m_logWriter;
};

#endif // APPLLAUNCHER_H
