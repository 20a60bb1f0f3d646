#include "applinfo.h"
#include "desktophandover.h"
#include "homewidget.h"
#include "launchertestmain.h"
#include "modalanswer.h"
#include "projectopener.h"
#include "recentuseditem.h"
#include "sampleproject.h"
#include "screeninfo.h"
#include "systemsettings.h"
#include "testfiles.h"
#include "thumbnailreader.h"

#include <QClipboard>
#include <QJsonArray>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMenu>
#include <QMimeData>
#include <QSignalSpy>
#include <QToolButton>
#include <QTranslator>

namespace {

// Picks an entry of the menu that opens next, with the keys a user would
// press; "Open with/2.2.01" goes through the submenu. The texts of every
// menu passed through are kept, a menu a line.
void pickFromMenu(const QStringList &steps, QStringList *seen, QMenu *parent = nullptr)
{
    QTimer::singleShot(10, [steps, seen, parent = QPointer<QMenu>(parent)]() {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        if (!menu || menu == parent) {
            pickFromMenu(steps, seen, parent);
            return;
        }
        QStringList texts;
        QAction *chosen = nullptr;
        for (QAction *action : menu->actions()) {
            if (action->isSeparator())
                continue;
            texts.append(action->text());
            if (!chosen && action->text().endsWith(steps.first()))
                chosen = action;
        }
        seen->append(texts.join('|'));
        if (!chosen) {
            menu->close();
            return;
        }
        menu->setActiveAction(chosen);
        if (steps.size() > 1) {
            QTest::keyClick(menu, Qt::Key_Right);
            pickFromMenu(steps.mid(1), seen, menu);
        } else {
            QTest::keyClick(menu, Qt::Key_Return);
        }
    });
}

} // namespace

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
    QLineEdit *filter() const { return m_page->findChild<QLineEdit *>("lineEditFilter"); }
    QStringList cardNames() const
    {
        QStringList names;
        for (int row = 0; cards()->isVisible() && row < cards()->model()->rowCount(); ++row)
            names.append(cards()->model()->index(row, 0).data().value<RecentUsedItem>().fileName());
        return names;
    }
    // The recent list in the manager file, "file version" newest first.
    QStringList savedHistories() const
    {
        QMultiMap<int, QString> bySerial; // keyed by the negated number, so newest first
        const QJsonValue list = TestFiles::readObject(m_profile->managerFile()).value("1.0.0")["histories"];
        for (const QJsonValue &entry : list.toArray())
            bySerial.insert(-entry["serial_no"].toInt(),
                QFileInfo(entry["openfilepath"].toString()).fileName() + ' ' + entry["version"].toString());
        return bySerial.values();
    }
    QString project(const QString &name) const { return m_profile->root() + "/projects/" + name; }
    // Projects saved by 2.1.05, recent in the order given, the last newest.
    void addRecent(const QStringList &names)
    {
        for (const QString &name : names) {
            QVERIFY(SampleProject::writeProject(project(name), "2.1.5.0"));
            QVERIFY(m_launcher->addHistoryAfterLaunch(EditorInfo("editor", "release", "2.1.05"), project(name)));
        }
    }
    QStringList editorStarts() const
    {
        QStringList starts;
        for (const QByteArray &line : TestFiles::read(editorLog()).split('\n')) {
            if (!line.isEmpty())
                starts.append(QJsonDocument::fromJson(line).toVariant().toStringList().join(' '));
        }
        return starts;
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
        m_launcher->unsetCurrentEditorInfo();
        QVERIFY(m_launcher->saveLauncherState());
        QFile::remove(editorLog());
        QVERIFY(QDir().mkpath(project(QString())));
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
    // read so far. A damaged or missing project keeps the default one. Held
    // until the main window's first paint, nothing is read; the set-up's end
    // reads them and gives the filter its clear button.
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

        const auto own = [](const QImage &image) {
            return image.convertToFormat(QImage::Format_ARGB32)
                .scaled(150, 150, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        };
        const QImage fallback = own(QImage(":/thumbnails/default.png"));
        const auto pictures = [this]() {
            QList<QImage> shown;
            for (int row = 0; row < cards()->model()->rowCount(); ++row)
                shown.append(cards()->model()->index(row, 0).data().value<RecentUsedItem>().getThumbnail());
            return shown;
        };
        m_page.reset(new HomeWidget);
        m_page->setProcessLauncher(m_launcher);
        m_page->holdUntilPainted();
        m_page->refreshRecentProjects();
        auto *reader = m_page->findChild<ThumbnailReader *>();
        QVERIFY(reader->isIdle());
        QCOMPARE(pictures(), QList<QImage>({ fallback, fallback, fallback, fallback }));
        m_page->finishSetUp();
        QVERIFY(!reader->isIdle() && filter()->isClearButtonEnabled());
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

    // A double click on a card, Enter and Delete on the current one, or each
    // entry of its menu, as the user picks it; what changes goes into the
    // manager file and is announced.
    void cardActions_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("setup");
        QTest::addColumn<QString>("boxes"); // the texts shown, the question answered Yes unless "answer No"
        QTest::addColumn<QString>("started");
        QTest::addColumn<QStringList>("after");
        QTest::addColumn<int>("announced");
        const QString gone = "File not found: tower.zmr\n(History will be removed)";
        const QStringList unchanged { "castle.zmr 2.1.05", "tower.zmr 2.1.05" };
        const QString remove
            = "Remove tower.zmr from the recent projects?\n\nThe project file itself stays where it is.";
        // clang-format off
        QTest::newRow("double click") << "double click" << "" << "" << "2.1.05" << QStringList { "tower.zmr 2.1.05", "castle.zmr 2.1.05" } << 1;
        // The first check wins: the record stays although the project is gone too.
        QTest::newRow("double click, editor gone") << "double click" << "uninstall, remove project" << "Application does not exist: 2.1.05\n(May be uninstalled)\n\nPlease install the editor of the displayed version again." << "" << unchanged << 0;
        QTest::newRow("double click, project gone") << "double click" << "remove project" << gone << "" << QStringList { "castle.zmr 2.1.05" } << 1;
        QTest::newRow("double click, start failed") << "double click" << "no execute bit" << "Failed to launch Vorlix Zanmir Editor" << "" << unchanged << 0;
        // The last card going shows the label instead of the list.
        QTest::newRow("double click, last card gone") << "double click" << "alone, remove project" << gone << "" << QStringList() << 1;
        QTest::newRow("Enter") << "Return key" << "" << "" << "2.1.05" << QStringList { "tower.zmr 2.1.05", "castle.zmr 2.1.05" } << 1;
        QTest::newRow("Delete") << "Delete key" << "" << remove << "" << QStringList { "castle.zmr 2.1.05" } << 1;
        QTest::newRow("open") << "Open" << "" << "" << "2.1.05" << QStringList { "tower.zmr 2.1.05", "castle.zmr 2.1.05" } << 1;
        QTest::newRow("open with") << "Open with/2.2.01" << "" << "" << "2.2.01" << QStringList { "tower.zmr 2.2.01", "castle.zmr 2.1.05" } << 1;
        QTest::newRow("open with, from the menu key") << "Open with/2.2.01" << "menu key" << "" << "2.2.01" << QStringList { "tower.zmr 2.2.01", "castle.zmr 2.1.05" } << 1;
        QTest::newRow("open with, project gone") << "Open with/2.2.01" << "remove project" << gone << "" << QStringList { "castle.zmr 2.1.05" } << 1;
        QTest::newRow("show in folder") << "Show in folder" << "" << "" << "" << QStringList { "castle.zmr 2.1.05", "tower.zmr 2.1.05" } << 0;
        QTest::newRow("show in folder, project gone") << "Show in folder" << "remove project" << gone << "" << QStringList { "castle.zmr 2.1.05" } << 1;
        QTest::newRow("copy path") << "Copy path" << "" << "" << "" << QStringList { "castle.zmr 2.1.05", "tower.zmr 2.1.05" } << 0;
        QTest::newRow("remove") << "Remove from list" << "" << remove << "" << QStringList { "castle.zmr 2.1.05" } << 1;
        QTest::newRow("remove, answered No") << "Remove from list" << "answer No" << remove << "" << QStringList { "castle.zmr 2.1.05", "tower.zmr 2.1.05" } << 0;
        // clang-format on
    }

    void cardActions()
    {
        QFETCH(QString, entry);
        QFETCH(QString, setup);
        QFETCH(QString, boxes);
        QFETCH(QString, started);
        QFETCH(QStringList, after);
        QFETCH(int, announced);
        install("2.1.05");
        install("2.2.01");
        const bool alone = setup.startsWith("alone");
        addRecent(alone ? QStringList { "tower.zmr" } : QStringList { "tower.zmr", "castle.zmr" });
        QVERIFY(showPage());
        if (setup.contains("uninstall"))
            QVERIFY(QFile::remove(SystemSettings::uninstallRecordsFile()));
        if (setup.endsWith("remove project"))
            QVERIFY(QFile::remove(project("tower.zmr")));
        if (setup == "no execute bit")
            QVERIFY(QFile::remove(editorPath("2.1.05")) && TestFiles::write(editorPath("2.1.05"), "not a program"));
        QList<QUrl> shown;
        DesktopHandOver::setOpener([&shown](const QUrl &url) { return shown.append(url), true; });
        const auto restore = qScopeGuard([]() { DesktopHandOver::setOpener({}); });
        QGuiApplication::clipboard()->clear();
        QSignalSpy announcements(m_launcher->getApplInfo(), SIGNAL(signalHistoryInfoUpdated()));

        ModalAnswer answer(setup == "answer No" ? QMessageBox::No : QMessageBox::Yes);
        QStringList menus;
        const QModelIndex tower = cards()->model()->index(alone ? 0 : 1, 0);
        const QPoint at = cards()->visualRect(tower).center();
        const bool menu = entry != "double click" && !entry.endsWith(" key");
        if (entry == "double click") {
            QTest::mouseClick(cards()->viewport(), Qt::LeftButton, Qt::NoModifier, at);
            QTest::mouseDClick(cards()->viewport(), Qt::LeftButton, Qt::NoModifier, at);
        } else if (!menu) {
            cards()->setFocus();
            cards()->setCurrentIndex(tower);
            QTest::keyClick(cards(), entry.startsWith("Delete") ? Qt::Key_Delete : Qt::Key_Return);
        } else if (setup == "menu key") {
            pickFromMenu(entry.split('/'), &menus);
            cards()->setCurrentIndex(tower);
            QContextMenuEvent key(QContextMenuEvent::Keyboard, QPoint(0, 0));
            QApplication::sendEvent(cards(), &key);
        } else {
            pickFromMenu(entry.split('/'), &menus);
            QContextMenuEvent click(QContextMenuEvent::Mouse, at, cards()->viewport()->mapToGlobal(at));
            QApplication::sendEvent(cards()->viewport(), &click);
        }
        if (menu)
            QCOMPARE(menus.value(0), QString("Open|Open with|Show in folder|Copy path|Remove from list"));
        if (entry.contains('/'))
            QCOMPARE(menus.value(1),
                QString("Vorlix Zanmir Editor 2.1.05|Vorlix Zanmir Editor 2.2.01")); // as the tiles
        QTRY_COMPARE(answer.texts().join('|'), boxes);
        QCOMPARE(savedHistories(), after);
        QCOMPARE(announcements.count(), announced);
        // The cards follow the list; when none is left, a label hides the old cards.
        QCOMPARE(cardNames().size(), after.size());
        QCOMPARE(cards()->isHidden(), after.isEmpty());
        if (after.isEmpty())
            QCOMPARE(
                m_page->findChild<QLabel *>("labelNoHistory")->text(), QString("Recent used project does not exist."));
        // The project file itself is never touched.
        QCOMPARE(QFile::exists(project("tower.zmr")), !setup.endsWith("remove project"));
        if (!started.isEmpty())
            QTRY_COMPARE_WITH_TIMEOUT(
                editorStarts(), QStringList { editorPath(started) + ' ' + project("tower.zmr") }, 10000);
        else
            QCOMPARE(editorStarts(), QStringList());
        QCOMPARE(shown,
            entry == "Show in folder" && boxes.isEmpty()
                ? QList<QUrl> { QUrl::fromLocalFile(project(QString()).chopped(1)) }
                : QList<QUrl>());
        QCOMPARE(QGuiApplication::clipboard()->text(), entry == "Copy path" ? project("tower.zmr") : QString());
    }

    // The arrows move among the cards; a card tells a screen reader its
    // file, time and version.
    void arrowsAndSpokenCards()
    {
        addRecent({ "tower.zmr", "castle.zmr", "keep.zmr" });
        QVERIFY(showPage());
        const QString spoken = cards()->model()->index(1, 0).data(Qt::AccessibleTextRole).toString();
        QVERIFY2(spoken.contains(QRegularExpression(
                     "^castle\\.zmr, last opened \\d{4}/\\d\\d/\\d\\d \\d\\d:\\d\\d:\\d\\d, version 2\\.1\\.05$")),
            qPrintable(spoken));
        cards()->setFocus();
        cards()->setCurrentIndex(cards()->model()->index(0, 0));
        QTest::keyClick(cards(), Qt::Key_Right);
        QCOMPARE(cards()->currentIndex().row(), 1);
    }

    // Tab goes from "Open project..." to one tile, the filter and the
    // cards; the arrows move among the tiles, and Enter starts the one with
    // the focus.
    void keysOnTiles()
    {
        install("2.1.05");
        install("2.2.01");
        addRecent({ "tower.zmr" });
        QVERIFY(showPage());
        m_page->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_page.data()));
        auto *open = m_page->findChild<QToolButton *>("buttonOpenProject");
        open->setFocus(Qt::TabFocusReason);
        const auto tab = [](Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab, modifiers);
            return QApplication::focusWidget();
        };
        const QWidget *first = tab();
        QCOMPARE(first->accessibleName(), QString("Start Vorlix Zanmir Editor 2.1.05"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
        QWidget *second = QApplication::focusWidget();
        QCOMPARE(second->accessibleName(), QString("Start Vorlix Zanmir Editor 2.2.01"));
        QTest::keyClick(second, Qt::Key_Right); // the last tile stays
        QCOMPARE(QApplication::focusWidget(), second);
        QCOMPARE(tab(), filter());
        QCOMPARE(tab(), cards());
        // Back to the band: the tile that had the focus last.
        QCOMPARE(tab(Qt::ShiftModifier), filter());
        QCOMPARE(tab(Qt::ShiftModifier), second);
        QCOMPARE(tab(Qt::ShiftModifier), open);
        for (QWidget *control : m_page->findChildren<QWidget *>()) {
            if (control->isVisible() && control->focusPolicy() & Qt::TabFocus)
                QVERIFY2(!control->accessibleName().isEmpty() || !control->property("text").toString().isEmpty(),
                    qPrintable(control->objectName()));
        }

        QTest::keyClick(second, Qt::Key_Return);
        QTRY_COMPARE_WITH_TIMEOUT(editorStarts(), QStringList { editorPath("2.2.01") + ' ' }, 10000);
    }

    // At most 100 cards, the most recent first, and the log says when more
    // are left out. The filter narrows the cards to file names and folders
    // that hold its text as typed, in any letter case; the cap counts what
    // matches.
    void filteringTheCards()
    {
        for (int i = 0; i < 100; ++i)
            QVERIFY(m_launcher->addHistoryAfterLaunch(
                EditorInfo("editor", "release", "2.1.05"), QString("/old/%1.zmr").arg(i)));
        m_log.mark();
        QVERIFY(showPage());
        QCOMPARE(cardNames().size(), 100); // all of them, and nothing said
        QCOMPARE(m_log.newLines().filter("RecentUsedWidget::"), QStringList());
        QVERIFY(m_launcher->addHistoryAfterLaunch(EditorInfo("editor", "release", "2.1.05"), "/old/100.zmr"));
        addRecent({ "Tower.zmr", "a+b (1).zmr", "ab 1.zmr" });
        m_log.mark();
        QVERIFY(showPage());
        m_page->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_page.data()));
        QCOMPARE(cardNames().size(), 100);

        QTest::keyClick(m_page.data(), Qt::Key_F, Qt::ControlModifier);
        QCOMPARE(QApplication::focusWidget(), filter());
        QTest::keyClicks(filter(), "A+B (1");
        QCOMPARE(cardNames(), QStringList { "a+b (1).zmr" });
        filter()->setText(".*");
        QCOMPARE(cardNames(), QStringList());
        QCOMPARE(m_page->findChild<QLabel *>("labelNoHistory")->text(), QString("No recent project matches \".*\"."));
        filter()->setText("projects/");
        QCOMPARE(cardNames(), (QStringList { "ab 1.zmr", "a+b (1).zmr", "Tower.zmr" }));
        filter()->setText("/old/");
        QCOMPARE(cardNames().size(), 100);
        QCOMPARE(cardNames().first(), QString("100.zmr"));
        // Said once, when the list was read.
        QCOMPARE(m_log.newLines().filter("RecentUsedWidget::"),
            QStringList { "RecentUsedWidget::setFileDesc: Histories will be displayed 100 of 104" });
        QTest::keyClick(filter(), Qt::Key_Escape);
        QCOMPARE(filter()->text(), QString());
        QCOMPARE(cardNames().size(), 100);
        QCOMPARE(cardNames().first(), QString("ab 1.zmr"));
    }

    // A project opens as a double click in the file manager opens it:
    // chosen with "Open project..." in the editor that fits it or the default
    // version, or dropped on a tile in that tile's version, whatever saved
    // it. Of several files dropped only the first project counts; the usual
    // boxes name what cannot be opened, and a start adds a history entry.
    void openingAProject_data()
    {
        QTest::addColumn<QString>("how"); // the button, or a drop on the tile of 2.2.01
        QTest::addColumn<QStringList>("files"); // chosen or dropped
        QTest::addColumn<QString>("setup");
        QTest::addColumn<QString>("started");
        QTest::addColumn<QString>("box");
        const QString unsupported = "This file has unsupported extension.\n";
        // clang-format off
        QTest::newRow("chosen, fits 2.1.05") << "button" << QStringList { "scene.zmr" } << "" << "2.1.05" << "";
        QTest::newRow("chosen, default version wins") << "button" << QStringList { "scene.zmr" } << "default 2.2.01" << "2.2.01" << "";
        QTest::newRow("nothing chosen") << "button" << QStringList() << "" << "" << "";
        QTest::newRow("chosen, damaged") << "button" << QStringList { "bad.zmr" } << "" << "" << "Failed to open project file.\n\nPlease confirm the file is not corrupted.";
        QTest::newRow("chosen, another kind of file") << "button" << QStringList { "notes.txt" } << "" << "" << unsupported + "@notes.txt";
        QTest::newRow("dropped, one project") << "drop" << QStringList { "scene.zmr" } << "" << "2.2.01" << "";
        QTest::newRow("dropped, a folder, text, two projects") << "drop" << QStringList { "folder", "notes.txt", "scene.zmr", "other.xml" } << "" << "2.2.01" << unsupported + "@folder\n@notes.txt";
        QTest::newRow("dropped, nothing to open") << "drop" << QStringList { "notes.txt" } << "" << "" << unsupported + "@notes.txt";
        // clang-format on
    }

    void openingAProject()
    {
        QFETCH(QString, how);
        QFETCH(QStringList, files);
        QFETCH(QString, setup);
        QFETCH(QString, started);
        QFETCH(QString, box);
        install("2.1.05");
        install("2.2.01");
        addRecent({ "earlier.zmr" });
        QVERIFY(SampleProject::writeProject(project("scene.zmr"), "2.1.5.0"));
        QVERIFY(SampleProject::writeProject(project("other.xml"), "2.1.5.0"));
        QVERIFY(TestFiles::write(project("bad.zmr"), "PK not really"));
        QVERIFY(TestFiles::write(project("notes.txt"), "text"));
        QVERIFY(QDir().mkpath(project("folder")));
        if (setup.startsWith("default")) {
            m_launcher->setCurrentEditorInfo(EditorInfo("editor", "release", setup.section(' ', 1)));
            QVERIFY(m_launcher->saveLauncherState());
        }
        QVERIFY(showPage());

        ModalAnswer answer;
        QMimeData data;
        if (how == "button") {
            QString folder;
            ProjectOpener::setChooser([&](QWidget *, const QString &shown) {
                folder = shown;
                return files.isEmpty() ? QString() : project(files.first());
            });
            const auto restore = qScopeGuard([]() { ProjectOpener::setChooser({}); });
            QTest::mouseClick(m_page->findChild<QToolButton *>("buttonOpenProject"), Qt::LeftButton);
            QCOMPARE(folder, project(QString()).chopped(1)); // where the latest project is
        } else {
            QList<QUrl> urls;
            for (const QString &name : files)
                urls.append(QUrl::fromLocalFile(project(name)));
            data.setUrls(urls);
            QWidget *target = tile(tileVersions().indexOf("2.2.01"));
            QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(target, &enter);
            QVERIFY(enter.isAccepted());
            QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(target, &drop);
            QVERIFY(drop.isAccepted());
            // A drag of no local file is not taken.
            QMimeData text;
            text.setText("scene.zmr");
            QDragEnterEvent other(QPoint(5, 5), Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(target, &other);
            QVERIFY(!other.isAccepted());
        }
        QTRY_COMPARE(answer.texts().join('|'), QString(box).replace('@', project(QString())));
        if (started.isEmpty()) {
            QCOMPARE(editorStarts(), QStringList());
            QCOMPARE(savedHistories(), QStringList { "earlier.zmr 2.1.05" });
        } else {
            QTRY_COMPARE_WITH_TIMEOUT(
                editorStarts(), QStringList { editorPath(started) + ' ' + project("scene.zmr") }, 10000);
            QCOMPARE(savedHistories(), (QStringList { "scene.zmr " + started, "earlier.zmr 2.1.05" }));
            QCOMPARE(cardNames(), (QStringList { "scene.zmr", "earlier.zmr" }));
        }
    }
};

ZANMIR_LAUNCHER_TEST_MAIN(TestHomePage)
#include "tst_homepage.moc"
