#include "applinfo.h"
#include "applupdater.h"
#include "cataloguebuilder.h"
#include "downloaddialog.h"
#include "launchertestmain.h"
#include "networkaccesshelper.h"
#include "packagemanager.h"
#include "screeninfo.h"
#include "testfiles.h"
#include "updatehistorywidget.h"

#include <QMessageBox>
#include <QSignalSpy>
#include <QToolButton>

// The install, update and uninstall conversations on a real launcher, with
// installers from a local server and an uninstaller written by the test.
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
    QString uninstaller() const { return m_profile->root() + "/uninstall"; }
    QString script(const QString &name) const { return "#!/bin/sh\necho " + name + " >> \"" + ranLog() + "\"\n"; }

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
        // The download dialog ends by itself; after a failure's box the user cancels it.
        if (qobject_cast<DownloadDialog *>(modal)) {
            if (!m_launcher->getApplUpdater()->isDownloading())
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
        QVERIFY(TestFiles::write(uninstaller(), script("uninstaller").toUtf8()));
        QVERIFY(QFile::setPermissions(uninstaller(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        connect(&m_user, SIGNAL(timeout()), this, SLOT(act()));
        m_user.start(10);
    }

    void init()
    {
        offer({ "editor 2.1.0.9", "editor 2.2.0.1" });
        setNetwork(true);
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
        // versions as the boxes do, %u is the uninstaller path.
        QTest::addColumn<QStringList>("seen");
        QTest::addColumn<QString>("ran"); // the programs run, in order
        QTest::addColumn<bool>("confirmed");
        QTest::addColumn<bool>("fetched"); // the installer
        QTest::addColumn<QStringList>("logged"); // by the flow itself
        const QString installed = "Update editor (2.1.0.9)|Confirm: Are you finished to update NEW ?";
        const QString uninstalling = "VersionDescWidget::actionUninstall: OLD uninstaller_path: %u";
        // clang-format off
        QTest::newRow("install") << "install" << "" << QStringList { "Yes", "Yes" } << QStringList { "Install editor (2.1.0.9)", "Confirm: Are you finished to install NEW ?" } << "installer" << true << true << QStringList();
        QTest::newRow("install, network down") << "install" << "network down" << QStringList { "Ok" } << QStringList { "error: Network is not available.\nCannot install.\n\nCheck network settings." } << "" << false << false << QStringList { "PackageManager::installEditor: network is not available." };
        QTest::newRow("install, No in the history") << "install" << "" << QStringList { "No" } << QStringList { "Install editor (2.1.0.9)" } << "" << false << false << QStringList();
        QTest::newRow("install, No at the end") << "install" << "" << QStringList { "Yes", "No" } << QStringList { "Install editor (2.1.0.9)", "Confirm: Are you finished to install NEW ?" } << "installer" << false << true << QStringList();
        QTest::newRow("install, installer does not start") << "install" << "not a program" << QStringList { "Yes", "Ok" } << QStringList { "Install editor (2.1.0.9)", "Error: ApplUpdater::openExecutableFile: failed ShellExecuteEx " } << "" << false << true << QStringList();
        QTest::newRow("update") << "update" << "" << QStringList { "Yes", "Yes" } << installed.split('|') << "installer uninstaller" << true << true << QStringList { "PackageManager::updateEditor: OLD uninstaller_path: %u" };
        QTest::newRow("update, network down") << "update" << "network down" << QStringList { "Ok" } << QStringList { "error: Network is not available.\nCannot update.\n\nCheck network settings." } << "" << false << false << QStringList { "PackageManager::updateEditor: network is not available." };
        QTest::newRow("update on the newest") << "update" << "newest" << QStringList { "Ok" } << QStringList { "Information: This is recent release version." } << "" << false << false << QStringList();
        QTest::newRow("update, No in the history") << "update" << "" << QStringList { "No" } << QStringList { "Update editor (2.1.0.9)" } << "" << false << false << QStringList();
        QTest::newRow("update, uninstaller fails") << "update" << "failing uninstaller" << QStringList { "Yes", "Yes" } << installed.split('|') << "installer" << true << true << QStringList { "PackageManager::updateEditor: OLD uninstaller_path: %u", "PackageManager::updateEditor: failed in openUninstallerFile. OLD uninstaller_path: %u" };
        QTest::newRow("update without uninstaller") << "update" << "no uninstaller" << QStringList { "Yes", "Ok" } << QStringList { "Update editor (2.1.0.9)", "Error: Path not found: uninstaller of OLD" } << "installer" << false << true << QStringList();
        QTest::newRow("uninstall, network down") << "uninstall" << "network down" << QStringList { "Yes", "Yes" } << QStringList { "Confirm: Are you sure to uninstall OLD ?", "Confirm: Are you finished to uninstall OLD ?" } << "uninstaller" << true << false << QStringList { uninstalling };
        QTest::newRow("uninstall, No") << "uninstall" << "" << QStringList { "No" } << QStringList { "Confirm: Are you sure to uninstall OLD ?" } << "" << false << false << QStringList { uninstalling };
        QTest::newRow("uninstall without uninstaller") << "uninstall" << "no uninstaller" << QStringList { "Ok" } << QStringList { "Error: Path not found: uninstaller of OLD" } << "" << false << false << QStringList();
        QTest::newRow("uninstaller path quoted") << "uninstall" << "quoted" << QStringList { "Yes", "Ok" } << QStringList { "Confirm: Are you sure to uninstall OLD ?", "Error: Failed to start uninstaller of OLD" } << "" << false << false << QStringList { uninstalling };
        QTest::newRow("uninstaller path with arguments") << "uninstall" << "arguments" << QStringList { "Yes", "Ok" } << QStringList { "Confirm: Are you sure to uninstall OLD ?", "Error: Failed to start uninstaller of OLD" } << "" << false << false << QStringList { uninstalling };
        // clang-format on
    }

    void flows()
    {
        QFETCH(QString, flow);
        QFETCH(QString, setup);
        QFETCH(QStringList, answers);
        QFETCH(QStringList, seen);
        QFETCH(QString, ran);
        QFETCH(bool, confirmed);
        QFETCH(bool, fetched);
        QFETCH(QStringList, logged);
        const QHash<QString, QString> uninstallers { { "no uninstaller", "" },
            { "failing uninstaller", m_profile->root() + "/gone" }, { "quoted", '"' + uninstaller() + '"' },
            { "arguments", uninstaller() + " /S" } };
        const QString uninstallerPath = uninstallers.value(setup, uninstaller());
        setNetwork(setup != "network down");
        if (setup == "newest")
            offer({ "editor 2.2.0.1" }); // a higher series is no update
        m_server.setAnswer(
            m_installer, HttpFixture::ok(setup == "not a program" ? "plain text" : script("installer").toUtf8()));
        const int before = m_server.requestCount(m_installer);
        QSignalSpy confirmations(m_launcher->getScreenInfo(), SIGNAL(signalInstallationConfirmed()));

        m_answers = answers;
        QScopedPointer<PackageManager> packages(manager(uninstallerPath));
        if (flow == "install")
            packages->installEditor("2.1.0.9");
        else if (flow == "update")
            packages->updateEditor();
        else
            packages->uninstallEditor();

        const auto expand = [&uninstallerPath](QStringList texts) {
            return texts.replaceInStrings("OLD", "Vorlix Zanmir Editor ver 2.1.0.5")
                .replaceInStrings("NEW", "release ver 2.1.0.9")
                .replaceInStrings("%u", uninstallerPath);
        };
        seen = expand(seen);
        QVERIFY2(std::equal(m_seen.cbegin(), m_seen.cend(), seen.cbegin(), seen.cend(),
                     [](const QString &shown, const QString &expected) { return shown.startsWith(expected); }),
            qPrintable(m_seen.join('\n')));
        QVERIFY(m_answers.isEmpty());
        QCOMPARE(QString::fromUtf8(TestFiles::read(ranLog())).simplified(), ran);
        QCOMPARE(confirmations.count(), int(confirmed));
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
