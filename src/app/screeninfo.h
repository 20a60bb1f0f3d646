#ifndef SCREENINFO_H
#define SCREENINFO_H

#include <QObject>

// The signal hub of the user interface. Code that holds only the launcher
// (update logic, package flows) tells the pages through it that something
// changed. It keeps no state.
class ScreenInfo : public QObject
{
    Q_OBJECT

public:
    explicit ScreenInfo(QObject *parent = nullptr);
    ~ScreenInfo() override;

signals:
    void signalRefreshButtonClicked();
    void signalInstallationConfirmed();
    // What the package flow that ends changed in the uninstall records, in
    // words for the management page; empty when it changed nothing. Comes
    // just before its signalInstallationConfirmed().
    void signalInstallationNoted(const QString &note);
    void signalUptodateVersionNoticed(bool updatingVersionFound, bool recentVersionFound);
    void signalUptodateWebVersionNoticed(bool updatedNewsWebFound, bool updatedHowtoWebFound);
};

#endif // SCREENINFO_H
