#include "applupdater.h"
#include "cataloguebuilder.h"
#include "downloaddialog.h"
#include "launchertestmain.h"
#include "launcherupdatewidget.h"
#include "testfiles.h"
#include "untrustedtlsserver.h"
#include "updatehistorywidget.h"

#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QToolButton>

// The download dialog, the editor's update history dialog and the
// launcher's update window on a real launcher, against a local server. The
// test plays the user from the event loop of each modal window.
class TestUpdateDialogs : public ServedLauncherTestCase
{
    Q_OBJECT

public:
    using ServedLauncherTestCase::ServedLauncherTestCase;

private:
    QTimer m_user;
    QList<std::function<bool()>> m_steps; // each returns false while it cannot act yet
    QStringList m_boxes; // "title: text" of each message box answered

    const QString m_installer = QStringLiteral("ZanmirLauncherSetup_1.1.0.0.exe");
    QString marker() const { return m_profile->root() + "/home/installer-ran"; }
    QString installerScript() const { return "#!/bin/sh\necho ran > \"" + marker() + "\"\n"; }
    QString downloaded() const { return m_profile->root() + "/home/Downloads/" + m_installer; }

    // Offers a launcher of that version, its installer checked by that digest if any.
    void offerLauncher(const QString &version, const QByteArray &sha256 = QByteArray())
    {
        serve(
            CatalogueBuilder().entries({ "launcher " + version }).installer(m_installer, "/installer", sha256).bytes());
        if (m_launcher->getApplUpdater())
            QVERIFY(m_launcher->prepareApplUpdater());
    }

    // Whether the page browser has reported a load of that url since the test began.
    bool pageLoaded(const QString &url)
    {
        return QTest::qWaitFor([&]() {
            const QStringList lines = m_log.newLines();
            return std::any_of(lines.cbegin(), lines.cend(), [&](const QString &line) {
                return line.startsWith("WebBrowserWidget::loadFinished: ") && line.endsWith(" [" + url + "]");
            });
        });
    }
    // What the user does next, once it can be done.
    void then(const std::function<bool()> &step) { m_steps.append(step); }
    void answerBox(QMessageBox::StandardButton button)
    {
        then([this, button]() {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (!box)
                return false;
            m_boxes.append(box->windowTitle() + ": " + box->text());
            box->button(button)->click();
            return true;
        });
    }
    void click(QWidget *window, const QString &button)
    {
        then([window, button]() {
            if (QApplication::activeModalWidget() != window)
                return false;
            // Queued: a button that opens a box must not hold up the next step.
            QMetaObject::invokeMethod(window->findChild<QToolButton *>(button), "click", Qt::QueuedConnection);
            return true;
        });
    }

public slots:
    void act()
    {
        if (!m_steps.isEmpty() && m_steps.first()())
            m_steps.removeFirst();
    }

private slots:
    void initTestCase()
    {
        offerLauncher("1.1.0.0");
        QVERIFY(startLauncher());
        connect(&m_user, SIGNAL(timeout()), this, SLOT(act()));
        m_user.start(20);
    }

    void init()
    {
        m_steps.clear();
        m_boxes.clear();
        QFile::remove(marker());
        QFile::remove(downloaded());
        offerLauncher("1.1.0.0");
        m_log.mark();
    }

    void downloadDialogProgress_data()
    {
        QTest::addColumn<bool>("withLength");
        QTest::newRow("with length") << true;
        QTest::newRow("without length") << false;
    }

    // The bar shows each progress as it comes, and 0 of 100 while the
    // length is unknown.
    void downloadDialogProgress()
    {
        QFETCH(bool, withLength);
        QByteArray body = installerScript().toUtf8();
        body.append(QByteArray(400000, '#'));
        m_server.setAnswer("/installer", HttpFixture::trickled(body, withLength));
        DownloadDialog dialog(true, nullptr);
        dialog.setProcessLauncher(m_launcher);
        const QString url = m_server.url("/installer");
        QVERIFY(dialog.startDownload(url, m_installer));
        auto *bar = dialog.findChild<QProgressBar *>("progressBar");
        QStringList wrong;
        int unknown = 0;
        // Connected after the dialog, so it sees the bar as the dialog left it.
        connect(
            m_launcher->getApplUpdater(), &ApplUpdater::signalUpdateProgress, this, [&](qint64 bytes, qint64 total) {
                unknown += total < 0;
                const QString seen = QStringLiteral("%1/%2").arg(bar->value()).arg(bar->maximum());
                const QString expected
                    = total < 0 ? QStringLiteral("0/100") : QStringLiteral("%1/%2").arg(bytes).arg(total);
                if (seen != expected)
                    wrong.append(seen + " for " + expected);
            });
        QCOMPARE(dialog.exec(), 1);
        disconnect(m_launcher->getApplUpdater(), &ApplUpdater::signalUpdateProgress, this, nullptr);
        QCOMPARE(wrong, QStringList());
        QCOMPARE(unknown > 0, !withLength);
        QCOMPARE(bar->value(), body.size());
        QCOMPARE(dialog.windowTitle(), QString("Downloading"));
        QCOMPARE(dialog.minimumSize(), QSize(390, 210));
        QCOMPARE(dialog.maximumSize(), QSize(390, 210));
        QVERIFY(QFile::exists(marker())); // waited for: it has run
        QVERIFY(TestLog::inOrder(m_log.newLines(),
            { "DownloadDialog:: Download started: " + url,
                "ApplUpdater::openDownloadFile: "
                "ApplUpdater::openExecutableFile: "
                    + downloaded() }));
    }

    void downloadDialogEnds_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("user"); // how the user ends the dialog after the box, if at all
        QTest::addColumn<QString>("box"); // the beginning of the box, "Error: ..."; empty for none
        QTest::addColumn<int>("result");
        // clang-format off
        QTest::newRow("installer runs") << "installer" << "" << "" << 1;
        QTest::newRow("404, then Cancel") << "404" << "cancelButton" << "Error: HTTP access failed: " << 0;
        QTest::newRow("404, then close") << "404" << "close" << "Error: HTTP access failed: " << 0;
        QTest::newRow("tampered installer") << "tampered" << "cancelButton" << "Error: Failed to download: SHA-256 checksum mismatch: " << 0;
        QTest::newRow("not a program") << "text" << "" << "Error: ApplUpdater::openExecutableFile: failed ShellExecuteEx " << 0;
        QTest::newRow("Cancel mid-transfer") << "stalled" << "cancelButton" << "" << 0;
        QTest::newRow("Escape mid-transfer") << "stalled" << "escape" << "" << 0;
        // clang-format on
    }

    // exec() returns 1 only when the installer started. A failure stays on
    // screen after its box until the user ends the dialog; a file that does
    // not start closes it after the box.
    void downloadDialogEnds()
    {
        QFETCH(QString, answer);
        QFETCH(QString, user);
        QFETCH(QString, box);
        QFETCH(int, result);
        const QByteArray script = installerScript().toUtf8();
        if (answer == "installer" || answer == "tampered")
            offerLauncher("1.1.0.0", QCryptographicHash::hash(script, QCryptographicHash::Sha256).toHex());
        const QHash<QString, HttpFixture::Answer> answers { { "installer", HttpFixture::ok(script) },
            { "404", HttpFixture::status(404, "Not Found", "gone") },
            { "tampered", HttpFixture::ok(script + "echo more >> \"$HOME/tampered\"\n") },
            { "text", HttpFixture::ok("plain text") }, { "stalled", HttpFixture::stalled(script) } };
        m_server.setAnswer("/installer", answers.value(answer));

        DownloadDialog dialog(true, nullptr);
        dialog.setProcessLauncher(m_launcher);
        const int requests = m_server.requestCount("/installer");
        QVERIFY(dialog.startDownload(m_server.url("/installer"), m_installer));
        if (!box.isEmpty())
            answerBox(QMessageBox::Ok);
        if (!user.isEmpty()) {
            // The user acts once the dialog is back in front after the box, or
            // once the server has the request and the transfer is under way.
            then([this, &dialog, &box, requests]() {
                return QApplication::activeModalWidget() == &dialog && dialog.isVisible()
                    && (!box.isEmpty() || m_server.requestCount("/installer") > requests);
            });
            if (user == "close")
                then([&dialog]() { return dialog.close(); });
            else if (user == "escape")
                then([&dialog]() {
                    QTest::keyClick(&dialog, Qt::Key_Escape);
                    return true;
                });
            else
                click(&dialog, user);
        }
        QCOMPARE(dialog.exec(), result);
        QCOMPARE(m_boxes.size(), box.isEmpty() ? 0 : 1);
        QVERIFY2(box.isEmpty() || m_boxes.first().startsWith(box), qPrintable(m_boxes.join('\n')));
        QCOMPARE(QFile::exists(marker()), result == 1);
        QCOMPARE(QFile::exists(downloaded()), answer == "installer" || answer == "text");
        QVERIFY(!m_launcher->getApplUpdater()->isDownloading());
        const QString ended = user == "close" ? "DownloadDialog::closed()" : "DownloadDialog::cancelClicked()";
        QCOMPARE(m_log.newLines().contains(ended), !user.isEmpty());
    }

    void untrustedInstaller_data()
    {
        QTest::addColumn<bool>("certificate"); // a server whose certificate is not trusted, or plain http elsewhere
        QTest::addColumn<QString>("box");
        // clang-format off
        QTest::newRow("certificate not trusted") << true << "Error: The server's certificate could not be verified, so the installer was not downloaded.";
        QTest::newRow("plain http, no digest") << false << "Error: The installer was not downloaded: it, or the update catalogue that names it, comes over an unencrypted connection";
        // clang-format on
    }

    // The user learns why an installer was not fetched: the server's
    // certificate failed, and the dialog stays until the user ends it; or
    // nothing could vouch for the file, and the dialog never runs.
    void untrustedInstaller()
    {
        QFETCH(bool, certificate);
        QFETCH(QString, box);
        UntrustedTlsServer tls;
        QVERIFY(tls.start());
        DownloadDialog dialog(true, nullptr);
        dialog.setProcessLauncher(m_launcher);
        answerBox(QMessageBox::Ok);
        if (!certificate) {
            QVERIFY(!dialog.startDownload("http://dl.zanmir.example/" + m_installer, m_installer));
        } else {
            QVERIFY(dialog.startDownload(tls.url("/installer"), m_installer));
            click(&dialog, "cancelButton");
            QCOMPARE(dialog.exec(), 0);
            QVERIFY(tls.handshakes() > 0);
        }
        QCOMPARE(m_boxes.size(), 1);
        QVERIFY2(m_boxes.first().startsWith(box), qPrintable(m_boxes.first()));
        QVERIFY(!QFile::exists(downloaded()));
    }

    void historyDialog_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("buttons"); // execute (or "-" when hidden), close
        QTest::addColumn<QStringList>("user"); // clicks, each question answered with the word after ":"
        QTest::addColumn<int>("result");
        // clang-format off
        QTest::newRow("update: No, then Yes") << 1 << "Update editor (2.2.01)" << "update cancel" << QStringList { "executeButton:No", "executeButton:Yes" } << 1;
        QTest::newRow("install: cancel") << 2 << "Install editor (2.2.01)" << "install cancel" << QStringList { "closeButton" } << 0;
        QTest::newRow("install: Yes") << 2 << "Install editor (2.2.01)" << "install cancel" << QStringList { "executeButton:Yes" } << 1;
        QTest::newRow("show only") << 3 << "Show update histories (2.2.01)" << "- OK" << QStringList { "closeButton" } << 0;
        QTest::newRow("unknown mode shows only") << 7 << "Show update histories (2.2.01)" << "- OK" << QStringList { "closeButton" } << 0;
        // clang-format on
    }

    // The question says "install" in every mode; No keeps the dialog open.
    void historyDialog()
    {
        QFETCH(int, mode);
        QFETCH(QString, title);
        QFETCH(QString, buttons);
        QFETCH(QStringList, user);
        QFETCH(int, result);
        UpdateHistoryWidget dialog(nullptr);
        dialog.setProcessLauncher(m_launcher);
        dialog.setDialogMode(mode, "Vorlix Zanmir Editor", "2.2.01", m_server.url("/history.htm?p=t?i=a#2.2.01"));
        auto *execute = dialog.findChild<QToolButton *>("executeButton");
        auto *close = dialog.findChild<QToolButton *>("closeButton");
        QCOMPARE(dialog.windowTitle(), title);
        for (const QString &step : user) {
            click(&dialog, step.section(':', 0, 0));
            if (step.contains(':'))
                answerBox(step.endsWith("Yes") ? QMessageBox::Yes : QMessageBox::No);
        }
        QCOMPARE(dialog.exec(), result);
        QCOMPARE((execute->isHidden() ? "-" : execute->text()) + ' ' + close->text(), buttons);
        QCOMPARE(m_boxes.size(), user.filter(":").size());
        for (const QString &box : qAsConst(m_boxes))
            QCOMPARE(box, QString("Confirm: Are you sure to install Vorlix Zanmir Editor ver 2.2.01 ?"));
        QVERIFY(pageLoaded(m_server.url("/history.htm?p=t?i=a#2.2.01")));
    }

    void launcherWindow_data()
    {
        QTest::addColumn<QString>("offered"); // the catalogue's launcher; 1.0.0.0 is the installed one
        QTest::addColumn<bool>("enabled");
        QTest::newRow("newer launcher") << "1.1.0.0" << true;
        QTest::newRow("nothing newer") << "1.0.0.0" << false;
    }

    // The update window styles itself, shows the launcher's notes and the
    // version on offer; without one only its close button is left.
    void launcherWindow()
    {
        QFETCH(QString, offered);
        QFETCH(bool, enabled);
        offerLauncher(offered);
        LauncherUpdateWidget window;
        window.setProcessLauncher(m_launcher);
        QCOMPARE(window.windowTitle(), QString("Update Zanmir Launcher"));
        QVERIFY(window.styleSheet().contains("LauncherUpdateWidget QFrame#historyFrame"));
        QCOMPARE(window.findChild<QToolButton *>("launcherUpdateButton")->isEnabled(), enabled);
        QCOMPARE(window.findChild<QToolButton *>("cancelButton")->isEnabled(), enabled);
        QVERIFY(window.findChild<QLabel *>("descriptionLabel")
                    ->text()
                    .startsWith(QStringLiteral("A new version (%1) of Zanmir Launcher is ready.\n")
                                    .arg(enabled ? offered : QString())));
        QVERIFY(pageLoaded(m_launcher->getWebUrl("launcher_history_web")));
    }

    void launcherWindowStays_data()
    {
        QTest::addColumn<QString>("answer"); // to the question whether to download
        QTest::newRow("No") << "No";
        QTest::newRow("Yes, the download fails") << "Yes";
    }

    // A No, or a download that fails and is cancelled, leaves the update
    // window as it was, and nothing is started.
    void launcherWindowStays()
    {
        QFETCH(QString, answer);
        m_server.setAnswer("/installer?t=pe1", HttpFixture::status(404, "Not Found", "gone"));
        LauncherUpdateWidget window;
        window.setProcessLauncher(m_launcher);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        answerBox(answer == "Yes" ? QMessageBox::Yes : QMessageBox::No);
        if (answer == "Yes") {
            answerBox(QMessageBox::Ok);
            then([]() {
                auto *dialog = qobject_cast<DownloadDialog *>(QApplication::activeModalWidget());
                if (dialog)
                    QMetaObject::invokeMethod(
                        dialog->findChild<QToolButton *>("cancelButton"), "click", Qt::QueuedConnection);
                return dialog != nullptr;
            });
        }
        window.findChild<QToolButton *>("launcherUpdateButton")->click();
        QCOMPARE(m_boxes.value(0), QString("Confirm: Are you sure to download installer for Launcher ver 1.1.0.0?"));
        QCOMPARE(m_boxes.size(), answer == "Yes" ? 2 : 1);
        QCOMPARE(m_server.requestCount("/installer?t=pe1"), answer == "Yes" ? 1 : 0);
        QVERIFY(window.isVisible() && window.findChildren<DownloadDialog *>().isEmpty());
    }
};

ZANMIR_LAUNCHER_TEST_MAIN(TestUpdateDialogs)
#include "tst_updatedialogs.moc"
