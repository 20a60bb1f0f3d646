#include "applupdater.h"
#include "cataloguebuilder.h"
#include "downloaddialog.h"
#include "downloadtexts.h"
#include "launchertestmain.h"
#include "launcherupdatewidget.h"
#include "testfiles.h"
#include "transferrate.h"
#include "untrustedtlsserver.h"
#include "updatehistorywidget.h"

#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QToolButton>
#include <QTranslator>

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
    // Clicks the button of that window, or of any modal one that has it, once it is in front.
    void click(QWidget *window, const QString &button)
    {
        then([window, button]() {
            QWidget *modal = QApplication::activeModalWidget();
            auto *target = modal ? modal->findChild<QToolButton *>(button) : nullptr;
            if (!target || (window && modal != window))
                return false;
            // Queued: a button that opens a box must not hold up the next step.
            QMetaObject::invokeMethod(target, "click", Qt::QueuedConnection);
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

    void downloadDialogEnds_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("user"); // how the user goes on after the box, if at all
        QTest::addColumn<QString>("box"); // "Error: ..."; empty for none
        QTest::addColumn<int>("result");
        const QString lost = "Error: The connection was lost after "
            + DownloadTexts::sizeOf(100000, installerScript().toUtf8().size() + 300000) + '.';
        // clang-format off
        QTest::newRow("installer runs") << "installer" << "" << "" << 1;
        QTest::newRow("installer runs, length unknown") << "no length" << "" << "" << 1;
        // Retry continues where the download stopped, and a success then runs the installer as usual.
        QTest::newRow("broken off, then Retry") << "broken" << "retryButton" << lost << 1;
        QTest::newRow("certificate not trusted") << "untrusted" << "cancelButton" << "Error: The server's certificate could not be verified, so the download was stopped." << 0;
        QTest::newRow("404, then Cancel") << "404" << "cancelButton" << "Error: The installer was not found on the server (HTTP 404)." << 0;
        QTest::newRow("404, then close") << "404" << "close" << "Error: The installer was not found on the server (HTTP 404)." << 0;
        QTest::newRow("tampered installer") << "tampered" << "cancelButton" << "Error: The downloaded file is not the installer that was published (its checksum differs)." << 0;
        QTest::newRow("not a program") << "text" << "" << "Error: ApplUpdater::openExecutableFile: failed ShellExecuteEx " << 0;
        QTest::newRow("Cancel mid-transfer") << "stalled" << "cancelButton" << "" << 0;
        QTest::newRow("Escape mid-transfer") << "stalled" << "escape" << "" << 0;
        // clang-format on
    }

    // exec() returns 1 only when the installer started. The bar follows
    // each progress as it comes, in thousandths of the whole, and the line
    // below gives the bytes; while the length is unknown the bar is busy and
    // the line says how much came so far. A failure says its cause in a box
    // and in the dialog, which stays with Retry until the user ends it; a
    // file that does not start closes it after the box.
    void downloadDialogEnds()
    {
        QFETCH(QString, answer);
        QFETCH(QString, user);
        QFETCH(QString, box);
        QFETCH(int, result);
        const QByteArray script = installerScript().toUtf8(), padded = script + QByteArray(300000, '#');
        if (answer == "installer" || answer == "no length" || answer == "tampered")
            offerLauncher("1.1.0.0", QCryptographicHash::hash(padded, QCryptographicHash::Sha256).toHex());
        const QHash<QString, HttpFixture::Answer> answers { { "installer", HttpFixture::trickled(padded) },
            { "no length", HttpFixture::trickled(padded, false) },
            { "404", HttpFixture::status(404, "Not Found", "gone") },
            { "tampered", HttpFixture::ok(script + "echo more >> \"$HOME/tampered\"\n") },
            { "text", HttpFixture::ok("plain text") }, { "stalled", HttpFixture::stalled(script) } };
        m_server.setAnswer("/installer", answers.value(answer));
        if (answer == "broken") {
            HttpFixture::Answer broken = HttpFixture::resumable(padded, "\"r1\"");
            broken.dropAt = 100000;
            m_server.setAnswer("/installer", broken);
        }
        UntrustedTlsServer tls;
        QVERIFY(answer != "untrusted" || tls.start());

        DownloadDialog dialog(true, nullptr);
        dialog.setProcessLauncher(m_launcher);
        const int requests = m_server.requestCount("/installer");
        auto *retry = dialog.findChild<QToolButton *>("retryButton");
        QStringList afterBox;
        const QString url = answer == "untrusted" ? tls.url("/installer") : m_server.url("/installer");
        QVERIFY(dialog.startDownload(url, m_installer));
        auto *bar = dialog.findChild<QProgressBar *>("progressBar");
        auto *status = dialog.findChild<QLabel *>("statusLabel");
        QStringList wrong;
        int unknown = 0;
        // Connected after the dialog, so it sees the bar as the dialog left it
        // (until a retry connects the dialog anew).
        connect(
            m_launcher->getApplUpdater(), &ApplUpdater::signalUpdateProgress, this, [&](qint64 bytes, qint64 total) {
                if (afterBox.size() > 0)
                    return;
                unknown += total < 0;
                // A busy bar has no value of its own.
                const QString seen = QStringLiteral("%1/%2 %3 %4")
                                         .arg(total < 0 ? QString() : QString::number(bar->value()))
                                         .arg(bar->maximum())
                                         .arg(dialog.windowTitle(), status->text());
                const QString expected = total < 0
                    ? QStringLiteral("/0 Downloading %1 so far").arg(DownloadTexts::size(bytes))
                    : QStringLiteral("%1/1000 Downloading %2")
                          .arg(bytes * 1000 / total)
                          .arg(DownloadTexts::sizeOf(bytes, total));
                if (!seen.startsWith(expected))
                    wrong.append(seen + " for " + expected);
            });
        const auto disconnectAtEnd = qScopeGuard(
            [this]() { disconnect(m_launcher->getApplUpdater(), &ApplUpdater::signalUpdateProgress, this, nullptr); });
        if (!box.isEmpty())
            answerBox(QMessageBox::Ok);
        if (!user.isEmpty()) {
            // The user acts once the dialog is back in front after the box, or
            // once the server has the request and the transfer is under way.
            then([&]() {
                if (QApplication::activeModalWidget() != &dialog || !dialog.isVisible()
                    || (box.isEmpty() && m_server.requestCount("/installer") == requests))
                    return false;
                // Still open after the box, with the cause and a way to try again.
                afterBox << dialog.findChild<QLabel *>("captionLabel")->text()
                         << dialog.findChild<QLabel *>("statusLabel")->text() << QString::number(retry->isVisible());
                if (answer == "broken")
                    m_server.setAnswer("/installer", HttpFixture::resumable(padded, "\"r1\""));
                return true;
            });
            if (user == "close" || user == "escape")
                then([&]() {
                    return user == "close" ? dialog.close() : (QTest::keyClick(&dialog, Qt::Key_Escape), true);
                });
            else
                click(&dialog, user);
        }
        QCOMPARE(dialog.exec(), result);
        QCOMPARE(wrong.join(QLatin1Char('\n')), QString());
        QCOMPARE(unknown > 0, answer == "no length");
        QCOMPARE(dialog.minimumSize(), QSize(390, 210));
        QCOMPARE(dialog.maximumSize(), QSize(390, 210));
        QCOMPARE(m_boxes.size(), box.isEmpty() ? 0 : 1);
        QVERIFY2(box.isEmpty() || m_boxes.first().startsWith(box), qPrintable(m_boxes.join('\n')));
        if (!user.isEmpty()) {
            const QStringList expected = answer == "stalled"
                ? QStringList { "Now downloading...", afterBox.value(1), "0" }
                : QStringList { "The download failed.", box.mid(7), "1" };
            QCOMPARE(afterBox, expected);
        }
        QCOMPARE(QFile::exists(marker()), result == 1);
        QVERIFY(result == 0
            || TestLog::inOrder(m_log.newLines(),
                { "DownloadDialog:: Download started: " + url,
                    "ApplUpdater::openDownloadFile: ApplUpdater::openExecutableFile: " + downloaded() }));
        QCOMPARE(QFile::exists(downloaded()), result == 1 || answer == "text");
        if (answer == "broken") {
            QVERIFY(m_server.lastRequest("/installer").contains("\r\nRange: bytes=100000-\r\n"));
            QCOMPARE(TestFiles::read(downloaded()), padded);
        }
        QVERIFY(answer != "untrusted" || tls.handshakes() > 0);
        QVERIFY(!m_launcher->getApplUpdater()->isDownloading());
        const QHash<QString, QString> ends { { "close", "closed()" }, { "retryButton", "retryClicked()" } };
        QCOMPARE(m_log.newLines().contains("DownloadDialog::" + ends.value(user, "cancelClicked()")), !user.isEmpty());
    }

    // While the installer runs the dialog says so, with a busy bar and
    // nothing to cancel, and the event loop runs on: the user's steps below
    // run inside it. Only the installer's end closes the dialog; its close
    // button offers to close the launcher instead.
    void installerRunsInFront()
    {
        const QString go = m_profile->root() + "/home/go";
        QFile::remove(go);
        m_server.setAnswer("/installer",
            HttpFixture::ok(("#!/bin/sh\nfor i in $(seq 1200); do [ -e \"" + go
                + "\" ] && break; sleep 0.05; done\necho ran > \"" + marker() + "\"\n")
                                .toUtf8()));
        DownloadDialog dialog(true, nullptr);
        dialog.setProcessLauncher(m_launcher);
        dialog.setPackage("release", "2.2.01");
        QVERIFY(dialog.startDownload(m_server.url("/installer"), m_installer));
        QStringList shown;
        then([&]() {
            if (dialog.windowTitle() != "Installing")
                return false;
            const auto *bar = dialog.findChild<QProgressBar *>("progressBar");
            shown << dialog.findChild<QLabel *>("captionLabel")->text()
                  << QString("%1-%2").arg(bar->minimum()).arg(bar->maximum())
                  << QString::number(dialog.findChild<QToolButton *>("cancelButton")->isVisible());
            QTest::keyClick(&dialog, Qt::Key_Escape);
            dialog.reject();
            QMetaObject::invokeMethod(&dialog, "close", Qt::QueuedConnection);
            return true;
        });
        answerBox(QMessageBox::No);
        then([&]() {
            shown << QString::number(dialog.isVisible()) << QString::number(QFile::exists(marker()));
            return TestFiles::write(go, "");
        });
        QCOMPARE(dialog.exec(), 1);
        QCOMPARE(shown, (QStringList { "Installing release ver 2.2.01...", "0-0", "0", "1", "0" }));
        QCOMPARE(m_boxes,
            QStringList { "Confirm: The installer of release ver 2.2.01 is still running.\n\n"
                          "Close Zanmir Launcher and leave it running?" });
        QVERIFY(QFile::exists(marker()));
        QVERIFY(!m_launcher->isClosing());
        QVERIFY(m_steps.isEmpty());
    }

    // An installer that nothing could vouch for is not fetched, and the
    // user learns why; the dialog never runs.
    void unvouchedInstaller()
    {
        DownloadDialog dialog(true, nullptr);
        dialog.setProcessLauncher(m_launcher);
        answerBox(QMessageBox::Ok);
        QVERIFY(!dialog.startDownload("http://dl.zanmir.example/" + m_installer, m_installer));
        QCOMPARE(m_boxes.size(), 1);
        QVERIFY2(m_boxes.first().startsWith("Error: The installer was not downloaded: it, or the update catalogue "
                                            "that names it, comes over an unencrypted connection"),
            qPrintable(m_boxes.first()));
        QVERIFY(!QFile::exists(downloaded()));
    }

    void downloadTexts_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        const qint64 mb = 1024 * 1024;
        DownloadFailure lost;
        lost.kind = DownloadFailure::ConnectionLost;
        lost.bytesDone = 120 * mb;
        lost.bytesTotal = 480 * mb;
        DownloadFailure full;
        full.kind = DownloadFailure::NoSpace;
        full.bytesNeeded = 480 * mb;
        full.bytesFree = 120 * mb;
        // clang-format off
        QTest::newRow("connection lost") << DownloadTexts::failure(lost) << "The connection was lost after 120 of 480 MB.";
        QTest::newRow("no space") << DownloadTexts::failure(full) << "Not enough free space in Downloads: 480 MB needed, 120 MB free.";
        // One decimal below ten units, so that 1.5 does not read as 2.
        QTest::newRow("small sizes") << DownloadTexts::size(0) + ", " + DownloadTexts::size(1536) + ", " + DownloadTexts::size(5 * 1024 * mb) << "0 B, 1.5 KB, 5.0 GB";
        QTest::newRow("in the unit of the whole") << DownloadTexts::sizeOf(512 * 1024, 4300 * mb) << "0.0 of 4.2 GB";
        QTest::newRow("speed and time left") << DownloadTexts::progress(120 * mb, 480 * mb, 12 * mb) << "120 of 480 MB, 12 MB/s, 30 s left";
        QTest::newRow("time left in hours") << DownloadTexts::progress(0, 4500 * mb, 1 * mb) << "0.0 of 4.4 GB, 1.0 MB/s, 1 h 15 min left";
        QTest::newRow("no speed yet") << DownloadTexts::progress(0, 480 * mb, 0) << "0 of 480 MB";
        QTest::newRow("no length") << DownloadTexts::progress(12 * mb, -1, 1.5 * mb) << "12 MB so far, 1.5 MB/s";
        // clang-format on
    }

    // A user reads sizes in one unit per line, and the causes exactly so.
    void downloadTexts()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(text, expected);
    }

    void downloadTextsFit_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::newRow("en_US") << "en_US";
        QTest::newRow("ja_JP") << "ja_JP";
    }

    // Every cause, with figures of the largest kind, fits the two lines
    // below the bar, and the caption and buttons their places, in each
    // language the launcher speaks.
    void downloadTextsFit()
    {
        QFETCH(QString, locale);
        QTranslator translator;
        QCOMPARE(ProcessLauncher::loadTranslator(translator, locale), locale == "ja_JP");
        DownloadDialog dialog(true, nullptr);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        auto *status = dialog.findChild<QLabel *>("statusLabel");
        QStringList clipped;
        const auto show = [&clipped](QLabel *label, const QString &text) {
            label->setText(text);
            if (label->heightForWidth(label->width()) > label->height())
                clipped.append(text);
        };
        for (int kind = DownloadFailure::FileNameRefused; kind < DownloadFailure::Other; ++kind) {
            DownloadFailure failure;
            failure.kind = DownloadFailure::Kind(kind);
            failure.httpStatus = 503;
            failure.bytesDone = failure.bytesFree = 1234LL * 1024 * 1024 * 1024;
            failure.bytesTotal = failure.bytesNeeded = 4321LL * 1024 * 1024 * 1024;
            failure.stallSeconds = 30;
            failure.detail
                = kind == DownloadFailure::WriteFailed ? "No space left on device" : "ZanmirSetup_2.3.01.exe";
            show(status, DownloadTexts::failure(failure));
        }
        show(status, DownloadTexts::progress(1234LL * 1024 * 1024, 4321LL * 1024 * 1024, 12.5 * 1024 * 1024));
        // The programs' stages, with the longest names the records give.
        for (const char *text : { "The installer runs in a window of its own; this one closes when it has ended.",
                 "The uninstaller runs in a window of its own; this one closes when it has ended." })
            show(status, DownloadTexts::tr(text));
        auto *caption = dialog.findChild<QLabel *>("captionLabel");
        for (const QString &text : { DownloadTexts::tr("The download failed."),
                 DownloadTexts::tr("Installing %1 ver %2...").arg("Vorlix Zanmir Editor", "2.10.100d"),
                 DownloadTexts::tr("Uninstalling %1 ver %2...").arg("Vorlix Zanmir Editor", "2.10.100d") })
            show(caption, text);
        for (QWidget *widget :
            { dialog.findChild<QWidget *>("retryButton"), dialog.findChild<QWidget *>("cancelButton") }) {
            if (widget->sizeHint().width() > widget->width())
                clipped.append(widget->objectName());
        }
        QCOMPARE(clipped.join(" | "), QString());
    }

    // The speed covers the last few seconds: bytes that were there before a
    // continued download began are no speed, and a stall soon shows as one.
    void transferRate()
    {
        TransferRate rate;
        rate.addSample(0, 100000000); // continued after 100 MB
        QCOMPARE(rate.bytesPerSecond(), 0.0);
        for (qint64 ms = 250; ms <= 2000; ms += 250)
            rate.addSample(ms, 100000000 + ms * 1000); // 1 MB/s
        QCOMPARE(qRound(rate.bytesPerSecond()), 1000000);
        for (qint64 ms = 2250; ms <= 6000; ms += 250)
            rate.addSample(ms, 102000000); // nothing more
        QCOMPARE(rate.bytesPerSecond(), 0.0);
        rate.restart();
        rate.addSample(7000, 0);
        rate.addSample(7100, 5000000);
        QCOMPARE(rate.bytesPerSecond(), 0.0); // too short to tell
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
        QTest::addColumn<QString>("answer"); // to the question whether to download; none when nothing is offered
        // clang-format off
        QTest::newRow("nothing newer") << "1.0.0.0" << "";
        QTest::newRow("newer launcher, No") << "1.1.0.0" << "No";
        QTest::newRow("newer launcher, Yes, the download fails") << "1.1.0.0" << "Yes";
        // clang-format on
    }

    // The update window styles itself, shows the launcher's notes and the
    // version on offer; without one only its close button is left. A No, or
    // a download that fails and is cancelled, leaves the window as it was,
    // and nothing is started.
    void launcherWindow()
    {
        QFETCH(QString, offered);
        QFETCH(QString, answer);
        const bool enabled = !answer.isEmpty();
        offerLauncher(offered);
        m_server.setAnswer("/installer?t=pe1", HttpFixture::status(404, "Not Found", "gone"));
        LauncherUpdateWidget window;
        window.setProcessLauncher(m_launcher);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCOMPARE(window.windowTitle(), QString("Update Zanmir Launcher"));
        QVERIFY(window.styleSheet().contains("LauncherUpdateWidget QFrame#historyFrame"));
        QCOMPARE(window.findChild<QToolButton *>("launcherUpdateButton")->isEnabled(), enabled);
        QCOMPARE(window.findChild<QToolButton *>("cancelButton")->isEnabled(), enabled);
        QVERIFY(window.findChild<QLabel *>("descriptionLabel")
                    ->text()
                    .startsWith(QStringLiteral("A new version (%1) of Zanmir Launcher is ready.\n")
                                    .arg(enabled ? offered : QString())));
        QVERIFY(pageLoaded(m_launcher->getWebUrl("launcher_history_web")));
        if (!enabled)
            return;

        answerBox(answer == "Yes" ? QMessageBox::Yes : QMessageBox::No);
        if (answer == "Yes") {
            answerBox(QMessageBox::Ok);
            click(nullptr, "cancelButton"); // of the download dialog
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
