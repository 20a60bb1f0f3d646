#include "applinfo.h"
#include "homewidget.h"
#include "launchertestmain.h"
#include "modalanswer.h"
#include "recentuseditem.h"
#include "sampleproject.h"
#include "screeninfo.h"
#include "systemsettings.h"
#include "testfiles.h"
#include "thumbnailreader.h"

#include <QJsonArray>
#include <QLabel>
#include <QListView>
#include <QListWidget>
#include <QTranslator>

// The launch page on a real launcher: a tile per installed editor that
// starts it, and the recent projects as cards that reopen them.
class TestHomePage : public LauncherTestCase
{
    Q_OBJECT

public:
    using LauncherTestCase::LauncherTestCase;

private:
    QTranslator m_translator;
    QScopedPointer<HomeWidget> m_page;

    QString editorLog() const { return m_profile->root() + "/editor-starts.jsonl"; }
    // The sample editor, linked once per version so that a start tells which.
    QString editorPath(const QString &version) const
    {
        return m_profile->root() + "/editors/" + version + "/ZanmirEditor";
    }
    void install(const QString &version, const QString &edition = "release")
    {
        QDir().mkpath(m_profile->root() + "/editors/" + version);
        QFile::remove(editorPath(version));
        QFile::link(ZANMIR_ARGRECORDER, editorPath(version));
        QHash<QString, QString> values = TestProfile::versionValues("E" + version, "editor", edition, version);
        values["EditorPath"] = editorPath(version);
        m_profile->registerApplication("E" + version, values);
    }
    QListWidget *tiles() const { return m_page->findChild<QListWidget *>("listWidget"); }
    // The tiles as shown, "version" each, in their order.
    QStringList tileVersions() const
    {
        QStringList versions;
        for (int row = 0; row < tiles()->count(); ++row)
            versions.append(tiles()->itemWidget(tiles()->item(row))->findChild<QLabel *>("labelApplVersion")->text());
        return versions;
    }
    QWidget *tile(int row) const { return tiles()->itemWidget(tiles()->item(row)); }
    QListView *cards() const { return m_page->findChild<QListView *>("listView"); }
    QStringList editorStarts() const
    {
        QStringList starts;
        for (const QByteArray &line : TestFiles::read(editorLog()).split('\n')) {
            if (!line.isEmpty())
                starts.append(QJsonDocument::fromJson(line).toVariant().toStringList().join(' '));
        }
        return starts;
    }
    // A user's double click: a click, then the second press.
    void doubleClickCard(int row)
    {
        const QPoint centre = cards()->visualRect(cards()->model()->index(row, 0)).center();
        QTest::mouseClick(cards()->viewport(), Qt::LeftButton, Qt::NoModifier, centre);
        QTest::mouseDClick(cards()->viewport(), Qt::LeftButton, Qt::NoModifier, centre);
    }
    bool showPage()
    {
        m_page.reset(new HomeWidget);
        m_page->setProcessLauncher(m_launcher);
        m_page->refreshRecentProjects();
        m_page->show();
        return QTest::qWaitForWindowExposed(m_page.data());
    }

private slots:
    void initTestCase()
    {
        m_profile->registerVersion("L0", "launcher", "release", "1.0.0.0");
        qputenv("ZANMIR_SAMPLE_EDITOR_LOG", QFile::encodeName(editorLog()));
        QVERIFY(m_launcher->initialize(m_translator));
    }

    void init()
    {
        // Nothing installed but the launcher, nothing recent, nothing pinned.
        m_profile->registerVersion("L0", "launcher", "release", "1.0.0.0");
        QSettings records(SystemSettings::uninstallRecordsFile(), QSettings::IniFormat);
        for (const QString &group : records.childGroups()) {
            if (group != "L0")
                records.remove(group);
        }
        records.sync();
        for (const HistoryInfo &history : m_launcher->getApplInfo()->getHistories())
            m_launcher->deleteHistoryInfo(history);
        for (const EditorInfo &editor : m_launcher->getInstalledEditors())
            m_launcher->deletePinnedVersionInfo(editor);
        QFile::remove(editorLog());
    }

    void tilesFollowTheInstalledVersions()
    {
        QVERIFY(showPage());
        QVERIFY(tiles()->isHidden());
        QCOMPARE(m_page->findChild<QLabel *>("labelNoEditor")->text(),
            QString("Installed editor does not exist.\nPlease install any editor using Application Management."));

        // A confirmed installation shows the tile without a restart.
        install("2.1.05");
        install("2.2.01");
        install("2.0.03", "inhouse");
        emit m_launcher->getScreenInfo()->signalInstallationConfirmed();
        QVERIFY(tiles()->isVisible());
        QCOMPARE(tileVersions(), (QStringList { "2.2.01", "2.1.05", "2.0.03d" }));

        // A pin moves its tile to the front at once; a new default moves nothing.
        QVERIFY(m_launcher->addPinnedVersionInfo(EditorInfo("editor", "release", "2.1.05")));
        emit m_launcher->getApplInfo()->signalPinnedVersionInfoUpdated();
        QCOMPARE(tileVersions(), (QStringList { "2.1.05", "2.2.01", "2.0.03d" }));
        QWidget *first = tile(0);
        m_launcher->setCurrentEditorInfo(EditorInfo("editor", "inhouse", "2.0.03"));
        QVERIFY(m_launcher->saveLauncherState());
        emit m_launcher->getApplInfo()->signalCurrentEditorInfoUpdated();
        QCOMPARE(tile(0), first);
        QCOMPARE(tileVersions(), (QStringList { "2.1.05", "2.2.01", "2.0.03d" }));
    }

    void pressingATile_data()
    {
        QTest::addColumn<QString>("setup"); // what happened to 2.1.05 since the tiles were made
        QTest::addColumn<int>("button");
        QTest::addColumn<QString>("started");
        QTest::addColumn<QString>("warning");
        // clang-format off
        QTest::newRow("left press") << "" << int(Qt::LeftButton) << "2.1.05 " << "";
        // A start would fail at once, with a box: the press tried nothing if none came.
        QTest::newRow("right press") << "no execute bit" << int(Qt::RightButton) << "" << "";
        QTest::newRow("program gone") << "gone" << int(Qt::LeftButton) << "" << "Editor can not be found.\nPlease add an editor on the application screen.\n\n2.1.05";
        QTest::newRow("program does not start") << "no execute bit" << int(Qt::LeftButton) << "" << "Failed to start the editor ver. 2.1.05.\n\nPlease install the editor of the displayed version again.";
        // clang-format on
    }

    void pressingATile()
    {
        QFETCH(QString, setup);
        QFETCH(int, button);
        QFETCH(QString, started);
        QFETCH(QString, warning);
        install("2.1.05");
        QVERIFY(showPage());
        QFile::remove(editorPath("2.1.05"));
        if (setup != "gone")
            QVERIFY(setup.isEmpty() ? QFile::link(ZANMIR_ARGRECORDER, editorPath("2.1.05"))
                                    : TestFiles::write(editorPath("2.1.05"), "not a program"));

        ModalAnswer answer;
        QTest::mousePress(tile(0), Qt::MouseButton(button));
        QTRY_COMPARE(answer.texts().join('|'), warning);
        if (!warning.isEmpty())
            QCOMPARE(answer.title(), QCoreApplication::applicationName());
        if (!started.isEmpty())
            QTRY_COMPARE_WITH_TIMEOUT(editorStarts().size(), 1, 10000);
        QCOMPARE(editorStarts().join('|'), started.isEmpty() ? QString() : editorPath("2.1.05") + ' ');
        QVERIFY(m_launcher->getApplInfo()->getHistories().isEmpty()); // no project, no history
    }

    void cardsAreCapped_data()
    {
        QTest::addColumn<int>("histories");
        QTest::addColumn<QStringList>("logged");
        // clang-format off
        QTest::newRow("100") << 100 << QStringList();
        QTest::newRow("101") << 101 << QStringList { "RecentUsedWidget::setFileDesc: Histories will be displayed 100 of 101" };
        // clang-format on
    }

    void cardsAreCapped()
    {
        QFETCH(int, histories);
        QFETCH(QStringList, logged);
        for (int i = 0; i < histories; ++i)
            QVERIFY(m_launcher->addHistoryAfterLaunch(
                EditorInfo("editor", "release", "2.1.05"), QString("/p/%1.zmr").arg(i)));
        m_log.mark();
        QVERIFY(showPage());
        QCOMPARE(cards()->model()->rowCount(), 100);
        QCOMPARE(m_log.newLines().filter("RecentUsedWidget::"), logged);
        // Most recently opened first.
        QCOMPARE(cards()->model()->index(0, 0).data().value<RecentUsedItem>().fileName(),
            QString("%1.zmr").arg(histories - 1));
    }

    // The file name, the time and the version with an in-house edition
    // named; for any other the blank stays.
    void cardTexts_data()
    {
        QTest::addColumn<QString>("edition");
        QTest::addColumn<QString>("version");
        QTest::newRow("inhouse") << "inhouse"
                                 << "(Ver. 1.2.00 inhouse)";
        QTest::newRow("release") << "release"
                                 << "(Ver. 1.2.00 )";
    }

    void cardTexts()
    {
        QFETCH(QString, edition);
        QFETCH(QString, version);
        HistoryInfo history("editor", edition, "1.2.00", m_profile->root() + "/a.zmr");
        history.setTimestamp("2026/11/23 10:00:00");
        const RecentUsedItem item(m_launcher, history);
        QCOMPARE(item.fileName() + ' ' + item.timestamp() + ' ' + item.versionText(),
            "a.zmr 2026/11/23 10:00:00 " + version);
    }

    // A card shows the default picture at once and its project's own once
    // that has been read off the main thread; a rebuild keeps the pictures
    // read so far. A damaged or missing project keeps the default one.
    void cardPictures()
    {
        const QString root = m_profile->root();
        QImage magenta(300, 200, QImage::Format_ARGB32), cyan(200, 300, QImage::Format_ARGB32);
        magenta.fill(Qt::darkMagenta);
        cyan.fill(Qt::darkCyan);
        QVERIFY(SampleProject::writeProject(root + "/a.zmr", "2.1.5.0", nullptr, TestFiles::png(magenta)));
        QVERIFY(SampleProject::writeProject(root + "/c.xml", "2.1.5.0"));
        QVERIFY(TestFiles::write(root + "/d.zmr", "PK\x03\x04 damaged"));
        QFile::remove(root + "/e.zmr");
        for (const char *name : { "e.zmr", "d.zmr", "c.xml", "a.zmr" })
            QVERIFY(m_launcher->addHistoryAfterLaunch(EditorInfo("editor", "release", "2.1.05"), root + '/' + name));

        const QImage fallback = QImage(":/thumbnails/default.png")
                                    .convertToFormat(QImage::Format_ARGB32)
                                    .scaled(150, 150, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        const auto own
            = [](const QImage &image) { return image.scaled(150, 150, Qt::KeepAspectRatio, Qt::SmoothTransformation); };
        const auto pictures = [this]() {
            QList<QImage> shown;
            for (int row = 0; row < cards()->model()->rowCount(); ++row)
                shown.append(cards()->model()->index(row, 0).data().value<RecentUsedItem>().getThumbnail());
            return shown;
        };
        m_page.reset(new HomeWidget);
        m_page->setProcessLauncher(m_launcher);
        m_page->refreshRecentProjects();
        QCOMPARE(pictures(), QList<QImage>({ fallback, fallback, fallback, fallback }));
        auto *reader = m_page->findChild<ThumbnailReader *>();
        QTRY_VERIFY(reader->isIdle());
        QCOMPARE(pictures(), QList<QImage>({ own(magenta), fallback, fallback, fallback }));

        // Another project opened: its card waits for its picture, the others keep theirs.
        QVERIFY(SampleProject::writeProject(root + "/f.zmr", "2.1.5.0", nullptr, TestFiles::png(cyan)));
        QVERIFY(m_launcher->addHistoryAfterLaunch(EditorInfo("editor", "release", "2.1.05"), root + "/f.zmr"));
        emit m_launcher->getApplInfo()->signalHistoryInfoUpdated();
        QCOMPARE(pictures(), QList<QImage>({ fallback, own(magenta), fallback, fallback, fallback }));
        QTRY_VERIFY(reader->isIdle());
        QCOMPARE(pictures(), QList<QImage>({ own(cyan), own(magenta), fallback, fallback, fallback }));
    }

    void doubleClickingACard_data()
    {
        QTest::addColumn<QString>("setup");
        QTest::addColumn<QString>("warning");
        QTest::addColumn<QString>("after"); // the recent list afterwards, newest first
        // clang-format off
        QTest::newRow("started") << "" << "" << "tower.zmr castle.zmr";
        // The first check wins: the record stays although the project is gone too.
        QTest::newRow("editor gone") << "uninstall, remove project" << "Application does not exist: 2.1.05\n(May be uninstalled)\n\nPlease install the editor of the displayed version again." << "castle.zmr tower.zmr";
        QTest::newRow("project gone") << "remove project" << "File not found: tower.zmr\n(History will be removed)" << "castle.zmr";
        QTest::newRow("start failed") << "no execute bit" << "Failed to launch Vorlix Zanmir Editor" << "castle.zmr tower.zmr";
        // The last card going shows the label instead of the list.
        QTest::newRow("last card gone") << "alone, remove project" << "File not found: tower.zmr\n(History will be removed)" << "";
        // clang-format on
    }

    void doubleClickingACard()
    {
        QFETCH(QString, setup);
        QFETCH(QString, warning);
        QFETCH(QString, after);
        install("2.1.05");
        const QString tower = m_profile->root() + "/tower.zmr", castle = m_profile->root() + "/castle.zmr";
        QVERIFY(TestFiles::write(tower, "project") && TestFiles::write(castle, "project"));
        QVERIFY(m_launcher->addHistoryAfterLaunch(EditorInfo("editor", "release", "2.1.05"), tower));
        QVERIFY(setup.startsWith("alone")
            || m_launcher->addHistoryAfterLaunch(EditorInfo("editor", "release", "2.1.05"), castle));
        QVERIFY(showPage());
        if (setup.contains("uninstall"))
            QFile::remove(SystemSettings::uninstallRecordsFile());
        if (setup.contains("remove project"))
            QVERIFY(QFile::remove(tower));
        if (setup == "no execute bit")
            QVERIFY(QFile::remove(editorPath("2.1.05")) && TestFiles::write(editorPath("2.1.05"), "not a program"));

        ModalAnswer answer;
        doubleClickCard(setup.startsWith("alone") ? 0 : 1);
        QTRY_COMPARE(answer.texts().join('|'), warning);
        QStringList recent;
        for (const HistoryInfo &history : m_launcher->getApplInfo()->getHistories())
            recent.append(QFileInfo(history.getOpenFilePath()).fileName());
        QCOMPARE(recent.join(' '), after);
        // The cards follow the list; when none is left, a label hides the old cards.
        QCOMPARE(cards()->model()->rowCount(), recent.isEmpty() ? 1 : recent.size());
        QCOMPARE(cards()->isHidden(), recent.isEmpty());
        if (recent.isEmpty())
            QCOMPARE(
                m_page->findChild<QLabel *>("labelNoHistory")->text(), QString("Recent used project does not exist."));
        if (warning.isEmpty())
            QTRY_COMPARE_WITH_TIMEOUT(editorStarts(), QStringList { editorPath("2.1.05") + ' ' + tower }, 10000);
        else
            QCOMPARE(editorStarts(), QStringList());
    }
};

ZANMIR_LAUNCHER_TEST_MAIN(TestHomePage)
#include "tst_homepage.moc"
