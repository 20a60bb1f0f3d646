#ifndef LAUNCHERTESTMAIN_H
#define LAUNCHERTESTMAIN_H

#include "processlauncher.h"
#include "testprofile.h"

#include <QtTest>

// main() for tests that need the launcher itself as the application object.
// The profile is made first, so that the launcher's log and state files land
// in it, and outlives the launcher. The test object gets both.
#define ZANMIR_LAUNCHER_TEST_MAIN(TestClass)                                                                           \
    int main(int argc, char *argv[])                                                                                   \
    {                                                                                                                  \
        TestProfile profile;                                                                                           \
        if (!profile.isValid())                                                                                        \
            return 1;                                                                                                  \
        ProcessLauncher launcher(argc, argv);                                                                          \
        TestClass test(&profile, &launcher);                                                                           \
        QTEST_SET_MAIN_SOURCE_PATH                                                                                     \
        return QTest::qExec(&test, argc, argv);                                                                        \
    }

#endif // LAUNCHERTESTMAIN_H
