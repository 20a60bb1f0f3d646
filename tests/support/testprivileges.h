#ifndef TESTPRIVILEGES_H
#define TESTPRIVILEGES_H

// Tests of files that cannot be read, written or moved. The suite may run as
// root, who reads and writes whatever the permissions say; giving that power
// up, for this process and every process it starts, makes such a test hold
// for root as for anyone else.
class TestPrivileges
{
public:
    // True when permissions bind this process from now on.
    static bool dropFileOverride();
};

#endif // TESTPRIVILEGES_H
