#ifndef REFRESHHOLD_H
#define REFRESHHOLD_H

class ProcessLauncher;

// Holds the refresh of the lists for the length of a scope: a modal flow must
// not see the row that owns it, and with it the flow's own dialogs, rebuilt
// under it by a refresh that its nested event loops let through. A refresh
// asked for meanwhile runs once when the last hold goes. Holds nest.
class RefreshHold
{
public:
    explicit RefreshHold(ProcessLauncher *launcher);
    ~RefreshHold();

    RefreshHold(const RefreshHold &) = delete;
    RefreshHold &operator=(const RefreshHold &) = delete;

private:
    ProcessLauncher *m_launcher;
};

#endif // REFRESHHOLD_H
