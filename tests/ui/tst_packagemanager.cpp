#include "applinfo.h"
#include "applupdater.h"
#include "cataloguebuilder.h"
#include "downloaddialog.h"
#include "launchertestmain.h"
#include "networkaccesshelper.h"
#include "packagemanager.h"
#include "screeninfo.h"
#include "systemsettings.h"
#include "testfiles.h"
#include "updatehistorywidget.h"

#include <QMessageBox>
#include <QNetworkProxy>
#include <QSignalSpy>
#include <QToolButton>

// The install, update and uninstall conversations on a real launcher, with
// installers from a local server and uninstallers written by the test, each
// of which changes the uninstall records as a real one would, or does not.
// The test plays the user and answers each box and history dialog in turn.
class TestPackageManager : public ServedLauncherTestCase
{
    Q_OBJECT

public:
    using ServedLauncherTestCase::ServedLauncherTestCase;

private:
    QWidget m_parent;
    QTimer m_user;
    QPointer<QWidget> m_answered;
    QStringList m_answers; // "Yes", "No" or "Ok", for each box and history dialog in turn
    QStringList m_seen; // "title: text" of each box, the title of each history dialog

    const QString m_installer = QStringLiteral("/v/2.1.0.9?t=pe1");
    QString ranLog() const { return m_profile->root() + "/ran"; }
    // In a folder with a blank in its name, as installers often put it.
    QString uninstaller() const { return m_profile->root() + "/un install/uninstall"; }
    // The uninstall records as a program leaves them: "installed" (2.1.0.9
    // beside 2.1.0.5), "updated" (2.1.0.9 only), "uninstalled" (neither).
    QString records(const QString &state) const { return m_profile->root() + "/records-" + state + ".ini"; }
    // A program that notes its run with its arguments and leaves the records
    // in that state (none: as they are).
    QByteArray script(const QString &name, const QString &state = QString()) const
    {
        QString text = "#!/bin/sh\necho " + name + " \"$@\" >> \"" + ranLog() + "\"\n";
        if (!state.isEmpty())
            text += "cp \"" + records(state) + "\" \"" + SystemSettings::uninstallRecordsFile() + "\"\n";
        return text.toUtf8();
    }
    void writeRecords(const QString &state, const QStringList &versions) const
    {
        QSettings records(this->records(state), QSettings::IniFormat);
        records.clear();
        for (const QString &subkey : QStringList { "L0", "E" } + versions) {
            const QHash<QString, QString> values = subkey == "L0"
                ? TestProfile::versionValues(subkey, "launcher", "release", "1.0.0.0")
                : TestProfile::versionValues(subkey, "editor", "release", subkey == "E" ? "2.1.0.5" : "2.1.0.9");
            for (auto it = values.constBegin(); it != values.constEnd(); ++it)
                records.setValue(subkey + '/' + it.key(), it.value());
        }
    }

    void offer(const QStringList &entries)
    {
        serve(CatalogueBuilder().entries(entries).bytes());
        QVERIFY(m_launcher->prepareApplUpdater());
    }
    // Qt refuses a name with a blank before any query, so "down" sends
    // nothing, not even to the resolver.
    void setNetwork(bool up)
    {
        m_launcher->getNetworkAccessHelper()->setHostName(up ? "localhost" : "no network.invalid");
    }
    PackageManager *manager(const QString &uninstallerPath)
    {
        auto *manager = new PackageManager(&m_parent);
        manager->setProcessLauncher(m_launcher);
        manager->setEditorInfo(EditorInfo(
            "editor", "Vorlix Zanmir Editor", "release", "2.1.0.5", TestProfile::executablePath("E"), uninstallerPath));
        return manager;
    }

    void answer(QWidget *modal)
    {
        // The download dialog ends by itself; after a failure's box the user
        // cancels it. While a program runs it cannot be cancelled at all.
        if (qobject_cast<DownloadDialog *>(modal)) {
            if (modal->findChild<QToolButton *>("retryButton")->isVisible())
                modal->findChild<QToolButton *>("cancelButton")->click();
            return;
        }
        const QString answer = m_answers.isEmpty() ? QString() : m_answers.takeFirst();
        if (auto *box = qobject_cast<QMessageBox *>(modal)) {
            m_seen.append(box->windowTitle() + ": " + box->text());
            QAbstractButton *button = box->button(answer == "Yes" ? QMessageBox::Yes
                    : answer == "No"                              ? QMessageBox::No
                                                                  : QMessageBox::Ok);
            (button ? button : box->buttons().constFirst())->click();
        } else if (auto *history = qobject_cast<UpdateHistoryWidget *>(modal)) {
            // Once its page has come or failed: the address is then in the log.
            if (!QTest::qWaitFor(
                    [this]() { return !m_log.newLines().filter("WebBrowserWidget::loadFinished").isEmpty(); }))
                m_seen.append("no page");
            m_seen.append(history->windowTitle());
            answer == "Yes" ? history->accept() : history->reject();
        }
    }

public slots:
    void act()
    {
        QWidget *modal = QApplication::activeModalWidget();
        if (!modal || modal == m_answered)
            return;
        m_answered = modal;
        // From a timer of its own, as answering may open the next window.
        QTimer::singleShot(0, this, [this, modal = QPointer<QWidget>(modal)]() {
            if (modal)
                answer(modal);
        });
    }

private slots:
    void initTestCase()
    {
        m_profile->registerVersion("E", "editor", "release", "2.1.0.5");
        QVERIFY(startLauncher());
        writeRecords("before", {});
        writeRecords("installed", { "E9" });
        QVERIFY(QFileInfo(records("installed")).size() > QFileInfo(records("before")).size());
        QVERIFY(QDir().mkpath(QFileInfo(uninstaller()).path()));
        connect(&m_user, SIGNAL(timeout()), this, SLOT(act()));
        m_user.start(10);
    }

    void init()
    {
        // Each flow starts from 2.1.0.5 alone; the uninstall states are made
        // from the records the launcher itself wrote.
        QFile::remove(SystemSettings::uninstallRecordsFile());
        QVERIFY(QFile::copy(records("before"), SystemSettings::uninstallRecordsFile()));
        for (const QString &state : QStringList { "updated", "uninstalled" }) {
            QFile::remove(records(state));
            QVERIFY(QFile::copy(records(state == QLatin1String("updated") ? "installed" : "before"), records(state)));
            QSettings(records(state), QSettings::IniFormat).remove("E");
        }
        offer({ "editor 2.1.0.9", "editor 2.2.0.1" });
        setNetwork(true);
        QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
        m_answers.clear();
        m_seen.clear();
        QFile::remove(ranLog());
        m_log.mark();
    }

    void flows_data()
    {
        QTest::addColumn<QString>("flow");
        QTest::addColumn<QString>("setup");
        QTest::addColumn<QStringList>("answers");
        // Boxes and history dialogs, each beginning so; OLD and NEW name the
        // versions as the boxes do, %u is the uninstall command.
        QTest::addColumn<QStringList>("seen");
        QTest::addColumn<QString>("ran"); // the programs run, in order, with their arguments
        QTest::addColumn<QString>("note"); // of the refresh that ends the flow; "-" for none
        QTest::addColumn<bool>("fetched"); // the installer
        QTest::addColumn<QStringList>("logged"); // by the flow itself
        const QStringList history { "Install editor (2.1.0.9)" };
        const QStringList updateHistory { "Update editor (2.1.0.9)" };
        const QString installed = "Vorlix Zanmir Editor ver 2.1.0.9 was installed.";
        const QString uninstalled = "Vorlix Zanmir Editor ver 2.1.0.5 was uninstalled.";
        const QString added = "uninstall records: added editor release 2.1.0.9";
        const QString removed = "uninstall records: removed editor release 2.1.0.5";
        const QString unchanged = "uninstall records: no change";
        const QString asked = "no change in the uninstall records; the user is asked";
        const QString uninstalling = "VersionDescWidget::actionUninstall: OLD uninstaller_path: %u";
        const QString replacing = "PackageManager::updateEditor: OLD uninstaller_path: %u";
        const QString incomplete
            = "Information: The update to NEW did not complete.\n\nOLD is still installed; nothing was uninstalled.";
        const auto in = [](const QString &flow, const QStringList &lines) {
            return QStringList(lines).replaceInStrings(
                QRegularExpression("^(uninstall records|no change)"), "PackageManager::" + flow + ": \\1");
        };
        // clang-format off
        QTest::newRow("install") << "install" << "" << QStringList { "Yes" } << history << "installer" << installed << true << in("installEditor", { added });
        QTest::newRow("install, installs nothing, Yes") << "install" << "installs nothing" << QStringList { "Yes", "Yes" } << history + QStringList { "Confirm: Are you finished to install NEW ?" } << "installer" << "" << true << in("installEditor", { asked, unchanged });
        QTest::newRow("install, installs nothing, No") << "install" << "installs nothing" << QStringList { "Yes", "No" } << history + QStringList { "Confirm: Are you finished to install NEW ?" } << "installer" << "-" << true << in("installEditor", { asked });
        QTest::newRow("install, network down") << "install" << "network down" << QStringList { "Ok" } << QStringList { "error: Network is not available.\nCannot install.\n\nCheck network settings." } << "" << "-" << false << QStringList { "PackageManager::installEditor: network is not available." };
        // Behind a proxy no name need resolve here; the download tells whether the server is there.
        QTest::newRow("install, names resolve only behind the proxy") << "install" << "proxy" << QStringList { "Yes" } << history << "installer" << installed << true << in("installEditor", { added });
        QTest::newRow("install, No in the history") << "install" << "" << QStringList { "No" } << history << "" << "-" << false << QStringList();
        QTest::newRow("install, installer does not start") << "install" << "not a program" << QStringList { "Yes", "Ok" } << history + QStringList { "Error: ApplUpdater::openExecutableFile: failed ShellExecuteEx " } << "" << "-" << true << QStringList();
        // The old version goes only once the new one is in the records.
        QTest::newRow("update") << "update" << "" << QStringList { "Yes" } << updateHistory << "installer uninstaller" << "Vorlix Zanmir Editor ver 2.1.0.5 was updated to ver 2.1.0.9." << true << in("updateEditor", { added, replacing, "uninstall records: added editor release 2.1.0.9; removed editor release 2.1.0.5" });
        // Refused before the user is asked to consent to it.
        QTest::newRow("update, plain http from elsewhere") << "update" << "plain http" << QStringList { "Ok" } << QStringList { "Error: The installer was not downloaded: " } << "" << "-" << false << QStringList { "PackageManager::findInstaller: Download refused: ZanmirSetup_2.1.0.9.exe has no SHA-256 in the catalogue, and it would come over plain http from dl.zanmir.example" };
        QTest::newRow("update, installs nothing, Yes") << "update" << "installs nothing" << QStringList { "Yes", "Yes", "Ok" } << updateHistory + QStringList { "Confirm: Are you finished to update NEW ?", incomplete } << "installer" << "" << true << in("updateEditor", { asked, unchanged });
        QTest::newRow("update, installs nothing, No") << "update" << "installs nothing" << QStringList { "Yes", "No", "Ok" } << updateHistory + QStringList { "Confirm: Are you finished to update NEW ?", incomplete } << "installer" << "-" << true << in("updateEditor", { asked });
        QTest::newRow("update, network down") << "update" << "network down" << QStringList { "Ok" } << QStringList { "error: Network is not available.\nCannot update.\n\nCheck network settings." } << "" << "-" << false << QStringList { "PackageManager::updateEditor: network is not available." };
        QTest::newRow("update on the newest") << "update" << "newest" << QStringList { "Ok" } << QStringList { "Information: This is recent release version." } << "" << "-" << false << QStringList();
        QTest::newRow("update, No in the history") << "update" << "" << QStringList { "No" } << updateHistory << "" << "-" << false << QStringList();
        // Both versions stay; only the log hears of the uninstaller.
        QTest::newRow("update, uninstaller does not start") << "update" << "missing uninstaller" << QStringList { "Yes" } << updateHistory << "installer" << installed << true << in("updateEditor", { added, replacing, "PackageManager::updateEditor: failed in openUninstallerFile. OLD uninstaller_path: %u", added });
        QTest::newRow("update without uninstaller") << "update" << "no uninstaller" << QStringList { "Yes", "Ok" } << updateHistory + QStringList { "Error: Path not found: uninstaller of OLD" } << "installer" << installed << true << in("updateEditor", { added, added });
        QTest::newRow("uninstall, network down") << "uninstall" << "network down" << QStringList { "Yes" } << QStringList { "Confirm: Are you sure to uninstall OLD ?" } << "uninstaller" << uninstalled << false << in("uninstallEditor", { uninstalling, removed });
        QTest::newRow("uninstall, removes nothing") << "uninstall" << "removes nothing" << QStringList { "Yes", "Yes" } << QStringList { "Confirm: Are you sure to uninstall OLD ?", "Confirm: Are you finished to uninstall OLD ?" } << "uninstaller" << "" << false << in("uninstallEditor", { uninstalling, asked, unchanged });
        QTest::newRow("uninstall, No") << "uninstall" << "" << QStringList { "No" } << QStringList { "Confirm: Are you sure to uninstall OLD ?" } << "" << "-" << false << QStringList { uninstalling };
        QTest::newRow("uninstall without uninstaller") << "uninstall" << "no uninstaller" << QStringList { "Ok" } << QStringList { "Error: Path not found: uninstaller of OLD" } << "" << "-" << false << QStringList();
        // Uninstall commands as installers write them.
        QTest::newRow("quoted, with arguments") << "uninstall" << "quoted" << QStringList { "Yes" } << QStringList { "Confirm: Are you sure to uninstall OLD ?" } << "uninstaller /S --keep settings" << uninstalled << false << in("uninstallEditor", { uninstalling, removed });
        QTest::newRow("unbalanced quotes") << "uninstall" << "unbalanced" << QStringList { "Yes", "Ok" } << QStringList { "Confirm: Are you sure to uninstall OLD ?", "Error: Failed to start uninstaller of OLD\n\nUnbalanced quotes in the command: [%u]" } << "" << "-" << false << QStringList { uninstalling };
        // clang-format on
    }

    void flows()
    {
        QFETCH(QString, flow);
        QFETCH(QString, setup);
        QFETCH(QStringList, answers);
        QFETCH(QStringList, seen);
        QFETCH(QString, ran);
        QFETCH(QString, note);
        QFETCH(bool, fetched);
        QFETCH(QStringList, logged);
        const QHash<QString, QString> commands { { "no uninstaller", "" },
            { "missing uninstaller", m_profile->root() + "/gone" },
            { "quoted", '"' + uninstaller() + "\" /S \"--keep settings\"" },
            { "unbalanced", '"' + uninstaller() + " /S" } };
        const QString command = commands.value(setup, uninstaller());
        setNetwork(setup != "network down" && setup != "proxy");
        if (setup == "proxy") // on loopback, where nothing listens: nothing else goes through it
            QNetworkProxy::setApplicationProxy(QNetworkProxy(QNetworkProxy::HttpProxy, "127.0.0.1", 9));
        if (setup == "newest")
            offer({ "editor 2.2.0.1" }); // a higher series is no update
        if (setup == "plain http") {
            serve(CatalogueBuilder()
                      .entries({ "editor 2.1.0.9" })
                      .installer("ZanmirSetup_2.1.0.9.exe", "http://dl.zanmir.example/setup.exe")
                      .bytes());
            QVERIFY(m_launcher->prepareApplUpdater());
        }
        const bool installs = setup != "installs nothing";
        m_server.setAnswer(m_installer,
            HttpFixture::ok(
                setup == "not a program" ? "plain text" : script("installer", installs ? "installed" : QString())));
        QVERIFY(TestFiles::write(uninstaller(),
            script("uninstaller",
                setup == "removes nothing" ? QString()
                    : flow == "update"     ? "updated"
                                           : "uninstalled")));
        QVERIFY(QFile::setPermissions(uninstaller(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        const int before = m_server.requestCount(m_installer);
        QSignalSpy confirmations(m_launcher->getScreenInfo(), SIGNAL(signalInstallationConfirmed()));
        QSignalSpy notes(m_launcher->getScreenInfo(), SIGNAL(signalInstallationNoted(QString)));

        m_answers = answers;
        QScopedPointer<PackageManager> packages(manager(command));
        if (flow == "install")
            packages->installEditor("2.1.0.9");
        else if (flow == "update")
            packages->updateEditor();
        else
            packages->uninstallEditor();

        const auto expand = [&command](QStringList texts) {
            return texts.replaceInStrings("OLD", "Vorlix Zanmir Editor ver 2.1.0.5")
                .replaceInStrings("NEW", "release ver 2.1.0.9")
                .replaceInStrings("%u", command);
        };
        seen = expand(seen);
        QVERIFY2(std::equal(m_seen.cbegin(), m_seen.cend(), seen.cbegin(), seen.cend(),
                     [](const QString &shown, const QString &expected) { return shown.startsWith(expected); }),
            qPrintable(m_seen.join('\n')));
        QVERIFY(m_answers.isEmpty());
        QCOMPARE(QString::fromUtf8(TestFiles::read(ranLog())).simplified(), ran);
        QCOMPARE(confirmations.count(), int(note != "-"));
        QCOMPARE(notes.count(), int(note != "-"));
        if (note != "-")
            QCOMPARE(notes.first().first().toString(), note);
        QCOMPARE(m_server.requestCount(m_installer) - before, int(fetched));
        const QStringList lines = m_log.newLines();
        QCOMPARE(lines.filter(QRegularExpression("^(PackageManager|VersionDescWidget)::")), expand(logged));
        // The history page jumps to the version on offer.
        for (const QString &line : lines.filter("WebBrowserWidget::loadFinished"))
            QVERIFY2(line.endsWith("/History/Editor.htm?t=pe1?p=t?i=a#2.1.0.9]"), qPrintable(line));
    }

    void failedSaveTellsNobody_data()
    {
        QTest::addColumn<bool>("saved");
        QTest::newRow("saved") << true;
        QTest::newRow("manager file cannot be replaced") << false;
    }

    // The new default holds in memory either way; only a saved one is announced.
    void failedSaveTellsNobody()
    {
        QFETCH(bool, saved);
        QScopedPointer<PackageManager> packages(manager(uninstaller()));
        if (!saved)
            QVERIFY(QFile::remove(m_profile->managerFile()) && QDir().mkpath(m_profile->managerFile()));
        QSignalSpy announced(m_launcher->getApplInfo(), SIGNAL(signalCurrentEditorInfoUpdated()));
        packages->setCurrentEditor(true);
        QCOMPARE(announced.count(), int(saved));
        QVERIFY(packages->isCurrentEditor());
        QVERIFY(QDir(m_profile->managerFile()).removeRecursively());
        packages->setCurrentEditor(false);
    }
};

ZANMIR_LAUNCHER_TEST_MAIN(TestPackageManager)
#include "tst_packagemanager.moc"
