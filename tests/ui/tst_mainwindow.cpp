#include "applinfo.h"
#include "homeform.h"
#include "launchertestmain.h"
#include "menubuttonwidget.h"
#include "modalanswer.h"
#include "preferencedialog.h"
#include "sampleproject.h"
#include "screeninfo.h"
#include "stylesheet.h"
#include "testfiles.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QScrollArea>
#include <QSignalSpy>
#include <QToolButton>
#include <QWebView>

// The main window on a real launcher: which page a menu key shows, when the
// catalogue is read again, the badges of the menu strip, and the preferences.
class TestMainWindow : public ServedLauncherTestCase
{
    Q_OBJECT

public:
    using ServedLauncherTestCase::ServedLauncherTestCase;

private:
    QScopedPointer<HomeForm> m_form;

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
    template<class T> static T *child(QDialog &dialog, const char *name) { return dialog.findChild<T *>(name); }

private slots:
    void initTestCase()
    {
        serve(R"({"1.0.0": {"app_versions": {"updates": []}, "web_versions": [{"type": "newsweb", "version": "2.0.0.0",
            "url": "/news.htm"}, {"type": "howtoweb", "version": "3.0.0.0", "url": "/help.htm"}]}})");
        QVERIFY(startLauncher("1.3.0.2"));
        m_form.reset(new HomeForm);
        m_form->setProcessLauncher(m_launcher);
        // The window's first frame waits for nothing slow: the second
        // reading of the catalogue and the web pages, which start the web
        // engine, come after it. Its badges come from the catalogue read at
        // start.
        QCOMPARE(catalogueReads(), 1);
        QVERIFY(!m_form->findChild<QWebView *>());
        QCOMPARE(m_form->findChild<QToolButton *>("buttonHelp")->icon().pixmap(36, 36).toImage(),
            QIcon(":/icons/howtoweb_update_yellow.png").pixmap(36, 36).toImage());
        m_log.mark();
        m_form->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_form.data()));
        QTRY_VERIFY(m_form->isSetUp());
        for (const char *area : { "scrollAreaInfo", "scrollAreaHelp" })
            QVERIFY(m_form->findChild<QScrollArea *>(area)->widget()->findChild<QWebView *>("webView"));
        // Both pages were given their addresses: each load comes to an end.
        QTRY_VERIFY(m_log.newLines().filter("WebBrowserWidget::loadFinished: ").size() >= 2);
    }

    void setUpReadsTheCatalogueAndShowsHome()
    {
        QCOMPARE(catalogueReads(), 2); // at start-up, and once more by the window
        QCOMPARE(visiblePages(), QStringList { "widgetHome" });
        // The filter gets its clear button, as the cards their pictures, after the first paint.
        QVERIFY(m_form->findChild<QLineEdit *>("lineEditFilter")->isClearButtonEnabled());
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
        ModalAnswer closes; // the preferences
        m_form->buttonClicked(key);
        QCOMPARE(closes.count(), int(key == "Pref"));
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
        // Back where the launcher looks for it, for the cases that follow.
        QVERIFY(m_server.listen(m_server.port()));
        const int reads = catalogueReads();
        m_form->buttonClicked("Refresh");
        QCOMPARE(catalogueReads(), reads + 1);
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
        ModalAnswer closes(QMessageBox::Ok, [this, &refreshed](QWidget *) {
            m_form->fireUpdate();
            QCOMPARE(refreshed.count(), 0);
        });
        m_form->buttonClicked("Pref");
        QCOMPARE(closes.count(), 1);
        QCOMPARE(refreshed.count(), 1); // the refresh that follows the dialog
        // Resumed with its old target, so due at once; then restarted. With a
        // span of zero a restart is due again within the millisecond, so the
        // restart shows in the target, not in a quiet next tick.
        const QDateTime beforeTick = QDateTime::currentDateTime();
        m_form->fireUpdate();
        QCOMPARE(refreshed.count(), 2);
        QVERIFY(notifier->isRunning());
        QVERIFY(notifier->getTargetTime() >= beforeTick);
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

    void preferencesShown()
    {
        QVERIFY(m_launcher->setLocale("en_US"));
        PreferenceDialog dialog;
        dialog.setProcessLauncher(m_launcher);
        QCOMPARE(dialog.size(), QSize(390, 210));
        QCOMPARE(dialog.minimumSize(), dialog.maximumSize());
        QCOMPARE(child<QLabel>(dialog, "labelVersionInfo")->text(), QString("Vorlix Zanmir Version 1.3.0.2"));
        QCOMPARE(child<QComboBox>(dialog, "comboLanguage")->currentData().toString(), QString("en_US"));
        QVERIFY(!child<QToolButton>(dialog, "buttonApply")->isEnabled());
        QVERIFY(!child<QToolButton>(dialog, "buttonApplyApplication")->isEnabled());
        // A stored locale of no language on offer selects none.
        QVERIFY(m_launcher->setLocale("xx_XX"));
        PreferenceDialog unknown;
        unknown.setProcessLauncher(m_launcher);
        QCOMPARE(child<QComboBox>(unknown, "comboLanguage")->currentIndex(), -1);
    }

    // The preferences dialog: Apply buttons that remember a pending change, OK
    // that asks only then, Cancel that never asks, and what reaches the file.
    void preferencesClosing_data()
    {
        // Steps on the dialog, then the button that closes it; the answer to a question.
        QTest::addColumn<QStringList>("steps");
        QTest::addColumn<int>("answer");
        QTest::addColumn<int>("result"); // of exec
        QTest::addColumn<int>("questions");
        QTest::addColumn<QString>("stored"); // locale, show-all
        // clang-format off
        QTest::newRow("OK, nothing changed") << QStringList { "buttonOKVersion" } << int(QMessageBox::Yes) << 1 << 0 << "en_US 0";
        QTest::newRow("OK after Apply") << QStringList { "ja_JP", "buttonApply", "buttonOK" } << int(QMessageBox::Yes) << 1 << 0 << "ja_JP 0";
        QTest::newRow("tick and untick still counts") << QStringList { "tick", "tick", "buttonOKApplication" } << int(QMessageBox::Yes) << 1 << 1 << "en_US 0";
        QTest::newRow("OK, Yes") << QStringList { "ja_JP", "tick", "buttonOKVersion" } << int(QMessageBox::Yes) << 1 << 1 << "ja_JP 1";
        QTest::newRow("OK, No keeps it open") << QStringList { "ja_JP", "buttonOK", "buttonCancel" } << int(QMessageBox::No) << 0 << 1 << "en_US 0";
        QTest::newRow("Cancel never asks") << QStringList { "ja_JP", "tick", "buttonCancelApplication" } << int(QMessageBox::Yes) << 0 << 0 << "en_US 0";
        // clang-format on
    }

    void preferencesClosing()
    {
        QFETCH(QStringList, steps);
        QFETCH(int, answer);
        QFETCH(int, result);
        QFETCH(int, questions);
        QFETCH(QString, stored);
        QVERIFY(m_launcher->setLocale("en_US") && m_launcher->setShowAllVersions(false));
        PreferenceDialog dialog;
        dialog.setProcessLauncher(m_launcher);
        ModalAnswer boxes(QMessageBox::StandardButton(answer), [&steps](QWidget *modal) {
            auto *shown = qobject_cast<PreferenceDialog *>(modal);
            if (!shown)
                return;
            for (const QString &step : steps) {
                if (step == "tick")
                    child<QCheckBox>(*shown, "checkBoxAllowAllVersions")->click();
                else if (step.contains('_'))
                    child<QComboBox>(*shown, "comboLanguage")->setCurrentIndex(step == "ja_JP" ? 1 : 0);
                else if (shown->isVisible())
                    child<QToolButton>(*shown, qPrintable(step))->click();
            }
        });
        QCOMPARE(dialog.exec(), result);
        QCOMPARE(boxes.count() - 1, questions); // the dialog itself counts once
        bool showAll = false;
        m_launcher->getShowAllVersions(showAll);
        QCOMPARE(TestFiles::readObject(m_profile->managerFile()).value("1.0.0")["locale"].toString() + ' '
                + QString::number(showAll),
            stored);
    }

    // A drop anywhere on the window opens the first project among the files
    // as a double click in the file manager does; the files of no project
    // form are named in the usual box.
    void dropOnTheWindow()
    {
        const QString root = m_profile->root();
        const QString editor = root + "/editors/2.1.05/ZanmirEditor";
        const QString editorLog = root + "/window-drop-starts.jsonl";
        QVERIFY(QDir().mkpath(root + "/editors/2.1.05") && QFile::link(ZANMIR_ARGRECORDER, editor));
        QHash<QString, QString> values = TestProfile::versionValues("E2.1.05", "editor", "release", "2.1.05");
        values["EditorPath"] = editor;
        m_profile->registerApplication("E2.1.05", values);
        qputenv("ZANMIR_SAMPLE_EDITOR_LOG", QFile::encodeName(editorLog));
        QVERIFY(QDir().mkpath(root + "/dropped/folder"));
        QVERIFY(TestFiles::write(root + "/dropped/notes.txt", "text"));
        QVERIFY(SampleProject::writeProject(root + "/dropped/scene.zmr", "2.1.5.0"));
        QVERIFY(SampleProject::writeProject(root + "/dropped/second.zmr", "2.1.5.0"));
        m_form->buttonClicked("Home");

        QMimeData data;
        data.setUrls({ QUrl::fromLocalFile(root + "/dropped/folder"), QUrl::fromLocalFile(root + "/dropped/notes.txt"),
            QUrl::fromLocalFile(root + "/dropped/scene.zmr"), QUrl::fromLocalFile(root + "/dropped/second.zmr") });
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_form.data(), &enter);
        QVERIFY(enter.isAccepted());
        ModalAnswer answer;
        QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_form.data(), &drop);
        QTRY_COMPARE(answer.texts(),
            QStringList {
                "This file has unsupported extension.\n" + root + "/dropped/folder\n" + root + "/dropped/notes.txt" });
        QTRY_COMPARE_WITH_TIMEOUT(TestFiles::read(editorLog).count('\n'), 1, 10000);
        QCOMPARE(QJsonDocument::fromJson(TestFiles::read(editorLog)).toVariant().toStringList(),
            (QStringList { editor, root + "/dropped/scene.zmr" }));
        QCOMPARE(m_launcher->getApplInfo()->getHistories().value(0).getOpenFilePath(), root + "/dropped/scene.zmr");
        QCOMPARE(m_launcher->getApplInfo()->getHistories().size(), 1);
    }
};

ZANMIR_LAUNCHER_TEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
