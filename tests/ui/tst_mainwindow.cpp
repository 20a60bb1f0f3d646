#include "applinfo.h"
#include "homeform.h"
#include "httpfixture.h"
#include "launchertestmain.h"
#include "menubuttonwidget.h"
#include "screeninfo.h"
#include "stylesheet.h"
#include "testfiles.h"

#include <QDialog>
#include <QSignalSpy>
#include <QToolButton>
#include <QTranslator>

// The main window on a real launcher: which page a menu key shows, when the
// catalogue is read again, and the badges of the menu strip.
class TestMainWindow : public LauncherTestCase
{
    Q_OBJECT

public:
    using LauncherTestCase::LauncherTestCase;

private:
    HttpFixture m_server;
    QTranslator m_translator;
    QScopedPointer<HomeForm> m_form;
    const QString m_cataloguePath = QStringLiteral("/Zanmir/Launcher/UpdateInfo/updateinfo.json?t=pe1");

    QStringList visiblePages() const
    {
        QStringList visible;
        for (const char *page :
            { "widgetHome", "scrollAreaInfo", "scrollAreaHelp", "widgetInstalledEditor", "widgetLicense" }) {
            if (m_form->findChild<QWidget *>(page)->isVisible())
                visible.append(page);
        }
        return visible;
    }
    int catalogueReads() const { return m_server.requestCount(m_cataloguePath); }
    // Closes the modal dialog that is open at the next turn of the event loop.
    static void closeDialogSoon(const std::function<void()> &whileOpen = {})
    {
        QTimer::singleShot(0, [whileOpen]() {
            QVERIFY(QTest::qWaitFor([]() { return QApplication::activeModalWidget() != nullptr; }));
            if (whileOpen)
                whileOpen();
            qobject_cast<QDialog *>(QApplication::activeModalWidget())->reject();
        });
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_server.listen());
        qputenv("ZANMIR_SERVER_BASE", m_server.url(QString()).toUtf8());
        m_profile->registerVersion("L0", "launcher", "release", "1.0.0.0");
        m_server.setAnswer(
            m_cataloguePath, HttpFixture::ok(R"({"1.0.0": {"app_versions": {"updates": []}, "web_versions": [
                {"type": "newsweb", "version": "2.0.0.0", "url": "/news.htm"},
                {"type": "howtoweb", "version": "3.0.0.0", "url": "/help.htm"}]}})"));
        QVERIFY(m_launcher->initialize(m_translator));
        m_form.reset(new HomeForm);
        m_form->setProcessLauncher(m_launcher);
        m_form->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_form.data()));
    }

    void setUpReadsTheCatalogueAndShowsHome()
    {
        QCOMPARE(catalogueReads(), 2); // at start-up, and once more by the window
        QCOMPARE(visiblePages(), QStringList { "widgetHome" });
        QVERIFY(m_launcher->getRefreshTimer()->isActive());
        QCOMPARE(m_launcher->getRefreshTimer()->interval(), 300000);
        QVERIFY(m_launcher->getUpdateNotifier()->isRunning() && !m_launcher->getUpdateNotifier()->isDue());
        QVERIFY(m_form->styleSheet().contains("HomeForm#HomeForm"));
        // A sheet that does not open leaves a window unstyled and working.
        QWidget unstyled;
        QVERIFY(!StyleSheet::applyTo(&unstyled, ":/stylesheet/missing.qss") && unstyled.styleSheet().isEmpty());
    }

    void pageSwitching_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("page"); // empty: none, "=": as before
        // clang-format off
        QTest::newRow("Info") << "Info" << "scrollAreaInfo";
        QTest::newRow("Help") << "Help" << "scrollAreaHelp";
        QTest::newRow("Appl") << "Appl" << "widgetInstalledEditor";
        QTest::newRow("License") << "License" << "widgetLicense";
        QTest::newRow("Refresh") << "Refresh" << "=";
        QTest::newRow("Pref") << "Pref" << "=";
        QTest::newRow("Home") << "Home" << "widgetHome";
        QTest::newRow("unknown key") << "Nowhere" << "";
        // clang-format on
    }

    void pageSwitching()
    {
        QFETCH(QString, key);
        QFETCH(QString, page);
        m_form->buttonClicked("License");
        const int reads = catalogueReads();
        if (key == "Pref")
            closeDialogSoon();
        m_form->buttonClicked(key);
        const QString expected = page == "=" ? QString("widgetLicense") : page;
        QCOMPARE(visiblePages(), expected.isEmpty() ? QStringList() : QStringList { expected });
        // Pref and Refresh read the catalogue again; the pages do not.
        QCOMPARE(catalogueReads() - reads, key == "Pref" || key == "Refresh" ? 1 : 0);
    }

    // Opening a page stores its stamp as seen, even with the server gone.
    void pageStampsWithTheServerDown()
    {
        m_server.close();
        m_form->buttonClicked("Info");
        m_form->buttonClicked("Help");
        const QJsonObject web
            = TestFiles::readObject(m_profile->managerFile()).value("1.0.0")["web_versions"].toObject();
        QCOMPARE(web["newsweb"]["version"].toString() + ' ' + web["howtoweb"]["version"].toString(),
            QString("2.0.0.0 3.0.0.0"));
        QVERIFY(m_server.listen(m_server.port()));
    }

    // The daily check stays silent while a dialog from the menu is open and
    // comes at the first tick after it closed, when it fell due meanwhile.
    void tickDuringADialog()
    {
        DateTimeNotifier *notifier = m_launcher->getUpdateNotifier();
        *notifier = DateTimeNotifier(0, 0, 0, 0);
        notifier->restart();
        QTest::qWait(5);
        QVERIFY(notifier->isDue());
        QSignalSpy refreshed(m_launcher->getScreenInfo(), SIGNAL(signalRefreshButtonClicked()));
        closeDialogSoon([this, &refreshed]() {
            m_form->fireUpdate();
            QCOMPARE(refreshed.count(), 0);
        });
        m_form->buttonClicked("Pref");
        QCOMPARE(refreshed.count(), 1); // the refresh that follows the dialog
        m_form->fireUpdate();
        QCOMPARE(refreshed.count(), 2);
        QVERIFY(notifier->isRunning());
        m_form->fireUpdate(); // restarted: no longer due
        QCOMPARE(refreshed.count(), 2);
        *notifier = DateTimeNotifier(0, 1, 0, 0);
        notifier->restart();
    }

    void badges_data()
    {
        // Signals of the hub, then button presses; the icon each badge button shows afterwards.
        QTest::addColumn<QStringList>("events");
        QTest::addColumn<QString>("icons"); // Info, Help, Appl
        // clang-format off
        QTest::newRow("revision") << QStringList { "appl 1 0" } << "info help appl_update_yellow";
        QTest::newRow("series") << QStringList { "appl 0 1" } << "info help appl_update_red";
        QTest::newRow("yellow beats red") << QStringList { "appl 1 1" } << "info help appl_update_yellow";
        QTest::newRow("neither") << QStringList { "appl 1 1", "appl 0 0" } << "info help appl";
        QTest::newRow("web badges") << QStringList { "web 1 1" } << "newsweb_update_yellow howtoweb_update_yellow appl";
        QTest::newRow("web badges cleared") << QStringList { "web 1 1", "web 0 0" } << "info help appl";
        QTest::newRow("pressing a page clears its badge") << QStringList { "web 1 1", "buttonInfo" } << "info howtoweb_update_yellow appl";
        QTest::newRow("Home keeps the appl badge") << QStringList { "appl 0 1", "buttonHome", "buttonAppl" } << "info help appl_update_red";
        QTest::newRow("Pref and Refresh only send their key") << QStringList { "web 1 1", "buttonPref", "buttonRefresh" } << "newsweb_update_yellow howtoweb_update_yellow appl";
        // clang-format on
    }

    void badges()
    {
        QFETCH(QStringList, events);
        QFETCH(QString, icons);
        MenuButtonWidget strip;
        strip.setProcessLauncher(m_launcher);
        QSignalSpy keys(&strip, SIGNAL(signalButtonClicked(QString)));
        ScreenInfo *hub = m_launcher->getScreenInfo();
        for (const QString &event : events) {
            const QStringList words = event.split(' ');
            if (words[0] == "appl")
                emit hub->signalUptodateVersionNoticed(words[1] == "1", words[2] == "1");
            else if (words[0] == "web")
                emit hub->signalUptodateWebVersionNoticed(words[1] == "1", words[2] == "1");
            else
                strip.findChild<QToolButton *>(words[0])->click();
        }
        QStringList shown;
        for (const char *name : { "buttonInfo", "buttonHelp", "buttonAppl" }) {
            const QImage image = strip.findChild<QToolButton *>(name)->icon().pixmap(36, 36).toImage();
            for (const QString &icon : icons.split(' ')) {
                if (image == QIcon(":/icons/" + icon + ".png").pixmap(36, 36).toImage())
                    shown.append(icon);
            }
        }
        QCOMPARE(shown.join(' '), icons);
        QStringList sent;
        for (const QList<QVariant> &key : qAsConst(keys))
            sent.append("button" + key.at(0).toString());
        QCOMPARE(sent, events.filter(QRegularExpression("^button")));
    }
};

ZANMIR_LAUNCHER_TEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
