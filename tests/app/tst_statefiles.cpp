#include "launchertestmain.h"
#include "registry.h"
#include "testfiles.h"
#include "testprivileges.h"

// The applications catalogue and the offline index are not needed to open a
// project: one that can be neither read nor replaced is moved aside and made
// anew, or else skipped for this run, and the launcher goes on.
class TestStateFiles : public LauncherTestCase
{
    Q_OBJECT

public:
    using LauncherTestCase::LauncherTestCase;

private slots:
    void initTestCase()
    {
        QVERIFY(TestPrivileges::dropFileOverride());
        m_profile->registerVersion("L0", "launcher", "release", "1.0.0.0");
        // The log file exists before any folder turns read-only.
        QVERIFY(!m_profile->launcherFolder().isEmpty());
        m_launcher->writeLog(QStringLiteral("TestStateFiles"));
    }

    void folderAtThePath_data()
    {
        QTest::addColumn<bool>("catalogue"); // or the offline index
        QTest::addColumn<bool>("folderWritable");
        QTest::newRow("catalogue moved aside") << true << true;
        QTest::newRow("catalogue skipped") << true << false;
        QTest::newRow("index moved aside") << false << true;
        QTest::newRow("index skipped") << false << false;
    }

    void folderAtThePath()
    {
        QFETCH(bool, catalogue);
        QFETCH(bool, folderWritable);
        const QString path = catalogue ? m_profile->catalogueFile()
                                       : m_profile->launcherFolder() + QStringLiteral("/OfflineFiles.json");
        const QString folder = QFileInfo(path).absolutePath();
        QFile::remove(path);
        QVERIFY(QDir().mkpath(path + "/x"));
        if (!folderWritable)
            QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
        m_log.mark();
        const bool read = catalogue ? m_launcher->readRegistry() : m_launcher->readOfflineFileInfo();
        QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        QVERIFY(read);

        const QString prefix = catalogue ? "ProcessLauncher::readRegistry: " : "ProcessLauncher::readOfflineFileInfo: ";
        const QStringList lines = m_log.newLines().filter(prefix);
        if (folderWritable) {
            QCOMPARE(lines
                         .filter(QRegularExpression(
                             "^" + QRegularExpression::escape(prefix + "Moved aside: " + path + " to " + path + '.')))
                         .size(),
                1);
            QVERIFY(TestFiles::readObject(path).contains(catalogue ? "applications" : "offlinefiles"));
        } else {
            const QString skipped = prefix + "Skipped for this run: " + path + ": Failed to move aside: " + path + ": ";
            QVERIFY2(lines.last().startsWith(skipped), qPrintable(lines.join('\n')));
            QVERIFY(QFileInfo(path).isDir());
        }
        // Either way the launcher goes on: the catalogue from memory, the
        // store keeping pages only with an index on disk.
        if (catalogue)
            QCOMPARE(m_launcher->getRegistry()->getVersionList("launcher").size(), 1);
        else
            QCOMPARE(m_launcher->saveOfflineFile("http://127.0.0.1:9/page", "page"), folderWritable);
        QDir(path).removeRecursively();
    }
};

ZANMIR_LAUNCHER_TEST_MAIN(TestStateFiles)
#include "tst_statefiles.moc"
