#include "desktophandover.h"
#include "launchertestmain.h"
#include "testfiles.h"
#include "untrustedtlsserver.h"
#include "webbrowserwidget.h"

#include <QDesktopServices>
#include <QJsonArray>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QWebElement>
#include <QWebFrame>
#include <QWebView>

// The embedded pages against a real local server: each page that loads is
// kept, a page that fails shows the kept copy, and a new-window request goes
// to the system's browser with the link under the last press.
class TestWebPages : public ServedLauncherTestCase
{
    Q_OBJECT

public:
    using ServedLauncherTestCase::ServedLauncherTestCase;

public slots:
    void openedBySystem(const QUrl &url) { m_opened.append(url.toString()); }

private:
    QStringList m_opened;

    // A widget showing the url, once its loads have settled (a failed load
    // is followed by the load of the copy).
    static QWebView *show(WebBrowserWidget &widget, ProcessLauncher *launcher, const QString &url, int loads)
    {
        widget.setProcessLauncher(launcher);
        auto *view = widget.findChild<QWebView *>("webView");
        QSignalSpy started(view, SIGNAL(loadStarted()));
        QSignalSpy finished(view, SIGNAL(loadFinished(bool)));
        widget.setUrl(url);
        widget.resize(640, 480);
        widget.show();
        if (!QTest::qWaitFor([&]() { return finished.count() >= loads; }, 10000))
            return nullptr;
        // The widget answers each finished load before the spy sees it, so a
        // further load would have started by now, or been posted.
        QCoreApplication::sendPostedEvents();
        return started.count() == loads && finished.count() == loads ? view : nullptr;
    }
    static QString text(QWebView *view) { return view->page()->mainFrame()->toPlainText().trimmed(); }

    // What the probe reports when it has read the secret file.
    const QString kSecret = QStringLiteral("zanmir-secret-4711");
    const QString kLeakPath = "/leak?" + kSecret;
    // A page that reads a file of the user's and hands its text to the
    // server in an image request, which the page's load waits for.
    QString writeProbe() const
    {
        const QString secret = m_profile->root() + "/secret.txt";
        const QString probe = m_profile->root() + "/probe.htm";
        const QString html = QStringLiteral("<html><body><p>Probe</p><script>"
                                            "var x = new XMLHttpRequest();"
                                            "try { x.open('GET', 'file://%1', false); x.send(); } catch (e) {}"
                                            "if (x.responseText) document.write('<img src=\"%2/leak?' + "
                                            "encodeURIComponent(x.responseText) + '\">');"
                                            "</script></body></html>")
                                 .arg(secret, m_server.url(QString()));
        return TestFiles::write(secret, kSecret.toUtf8()) && TestFiles::write(probe, html.toUtf8()) ? probe : QString();
    }
    static QByteArray newsCatalogue(const QString &url)
    {
        const QJsonObject news { { "type", "newsweb" }, { "version", "9.0.0.0" }, { "url", url } };
        return QJsonDocument(QJsonObject { { "1.0.0", QJsonObject { { "web_versions", QJsonArray { news } } } } })
            .toJson();
    }
    // The launcher keeps the server address it started with; a function that
    // closed the server may have left it listening elsewhere.
    bool listenAtServerBase()
    {
        const quint16 base = QUrl(m_launcher->getWebUrl("launcher_info_web")).port();
        if (m_server.port() == base)
            return true;
        m_server.close();
        return QTest::qWaitFor([&]() { return m_server.listen(base); });
    }
    QString defaultNewsPath() const
    {
        QString locale;
        m_launcher->getLocale(locale);
        return "/Zanmir/Launcher/" + locale + "/NewsWeb/news.htm?t=pe1";
    }

private slots:
    void initTestCase()
    {
        QVERIFY(startLauncher());
        QDesktopServices::setUrlHandler("http", this, "openedBySystem");
        m_server.setAnswer("/news.htm",
            HttpFixture::ok("<html><body><p>Fresh news</p><a id='more' href='http://127.0.0.1:9/more.htm' "
                            "style='display:block;width:300px;height:40px'>More</a></body></html>"));
    }
    void cleanupTestCase() { QDesktopServices::unsetUrlHandler("http"); }

    void pageLeavesItsCopy()
    {
        const QString url = m_server.url("/news.htm");
        WebBrowserWidget widget;
        QWebView *view = show(widget, m_launcher, url, 1);
        QVERIFY(view);
        QVERIFY(text(view).startsWith("Fresh news"));
        QVERIFY(m_launcher->restoreOfflineFile(url).contains("Fresh news"));

        // A new widget on the same address with the server gone shows the copy.
        m_server.close();
        WebBrowserWidget offline;
        view = show(offline, m_launcher, url, 2);
        QVERIFY(view);
        QVERIFY(text(view).startsWith("Fresh news"));
        // Back on the same address, the page loads from the server again.
        QVERIFY(QTest::qWaitFor([this]() { return m_server.listen(m_server.port()); }));
        WebBrowserWidget online;
        QVERIFY(show(online, m_launcher, url, 1));
    }

    // With no copy, the page is empty, and the empty page becomes the copy.
    void failedFirstLoad()
    {
        const QString url = QStringLiteral("http://127.0.0.1:9/never.htm");
        WebBrowserWidget widget;
        QWebView *view = show(widget, m_launcher, url, 2);
        QVERIFY(view);
        QCOMPARE(text(view), QString());
        const QString copy = m_launcher->restoreOfflineFile(url);
        QVERIFY(copy.contains("<body></body>"));
    }

    // A plain link is only taken note of: the page stays. A new-window
    // request goes to the system's browser with the link under the last
    // press, or with an empty address when the press was on no link.
    void linksLeaveThePageInPlace()
    {
        WebBrowserWidget widget;
        QWebView *view = show(widget, m_launcher, m_server.url("/news.htm"), 1);
        QVERIFY(view);
        m_log.mark();
        const QPoint link = view->page()->mainFrame()->findFirstElement("#more").geometry().center();
        QTest::mouseClick(view, Qt::LeftButton, Qt::NoModifier, link);
        QVERIFY(QTest::qWaitFor([this]() { return !m_log.newLines().isEmpty(); }));
        QCOMPARE(m_log.newLines(), QStringList { "WebBrowserWidget::linkClicked: http://127.0.0.1:9/more.htm" });

        for (const QPoint &press : { link, QPoint(1, 1) }) {
            QTest::mousePress(view, Qt::LeftButton, Qt::NoModifier, press);
            m_opened.clear();
            view->page()->mainFrame()->evaluateJavaScript("window.open('http://127.0.0.1:9/asked.htm')");
            QCOMPARE(
                m_opened.filter("http"), press == link ? QStringList { "http://127.0.0.1:9/more.htm" } : QStringList());
            QTest::mouseRelease(view, Qt::LeftButton, Qt::NoModifier, QPoint(1, 1));
        }
        QVERIFY(text(view).startsWith("Fresh news"));
    }

    void catalogueCannotNameALocalPage_data()
    {
        QTest::addColumn<QString>("scheme"); // what stands before the probe's path
        QTest::newRow("file") << "file://";
        QTest::newRow("mixed case") << "FiLe://";
        QTest::newRow("percent-encoded") << "file%3A//";
    }

    // A catalogue whose news record names a local page that reads a file of
    // the user's and reports it to the server: the news page falls back to
    // its default address, nothing reaches the server, and the log says why.
    void catalogueCannotNameALocalPage()
    {
        QFETCH(QString, scheme);
        QVERIFY(listenAtServerBase());
        serve(newsCatalogue(scheme + writeProbe()));
        QVERIFY(m_launcher->prepareApplUpdater());
        m_launcher->saveWebVersion("newsweb"); // as when the user opens Information
        m_server.setAnswer(defaultNewsPath(), HttpFixture::ok("<html><body><p>Default news</p></body></html>"));

        // The next start shows the page again, from the stored address.
        const int leaks = m_server.requestCount(kLeakPath);
        m_log.mark();
        WebBrowserWidget widget;
        QWebView *view = show(widget, m_launcher, m_launcher->getWebUrl("newsweb"), 1);
        QVERIFY(view);
        QCOMPARE(m_server.requestCount(kLeakPath), leaks);
        QCOMPARE(text(view), QString("Default news"));
        QVERIFY2(
            !m_log.newLines().filter("Refused").filter("probe.htm").isEmpty(), qPrintable(m_log.newLines().join('\n')));
    }

    void probeReadsNoFile_data()
    {
        QTest::addColumn<bool>("offline");
        QTest::newRow("offline copy") << true;
        QTest::newRow("local page") << false;
    }

    // Whatever slips through, a page that the network wrote reads no file:
    // neither its offline copy, shown without a base, nor the page itself
    // opened from a local file.
    void probeReadsNoFile()
    {
        QFETCH(bool, offline);
        const QString probe = writeProbe();
        QString url = QUrl::fromLocalFile(probe).toString();
        if (offline) {
            url = QStringLiteral("http://127.0.0.1:9/offline-probe.htm");
            QVERIFY(m_launcher->saveOfflineFile(url, QString::fromUtf8(TestFiles::read(probe))));
        }
        const int leaks = m_server.requestCount(kLeakPath);
        WebBrowserWidget widget;
        QWebView *view = show(widget, m_launcher, url, offline ? 2 : 1);
        QVERIFY(view);
        QCOMPARE(m_server.requestCount(kLeakPath), leaks);
        QVERIFY(text(view).startsWith("Probe"));
    }

    // Links leave for the desktop by an allow-list, one per click of the
    // user's: a page's script opens nothing of its own, in a loop or not.
    void linksGoToTheDesktopByAllowList()
    {
        QStringList opened;
        DesktopHandOver::setOpener([&opened](const QUrl &url) {
            opened.append(url.toString());
            return true;
        });
        const auto restore = qScopeGuard([]() { DesktopHandOver::setOpener({}); });
        const QStringList links { "file:///etc/hostname", "javascript:void(0)", "data:text/html,hello",
            "zanmir-probe:run", "http://127.0.0.1:9/a.htm", "https://127.0.0.1:9/b.htm", "mailto:news@zanmir.example" };
        const QString loop = QStringLiteral("for (var i = 0; i < 100; ++i) window.open('http://127.0.0.1:9/pop' + i);");
        QString html = "<html><body><script>" + loop + "</script>";
        for (int i = 0; i < links.size(); ++i) {
            html += QStringLiteral("<a id='link%1' href='%2' onclick=\"%3 return false;\" "
                                   "style='display:block;width:300px;height:30px'>%2</a>")
                        .arg(i)
                        .arg(links.at(i), loop);
        }
        m_server.setAnswer("/links.htm", HttpFixture::ok(html.toUtf8() + "</body></html>"));
        m_log.mark();
        WebBrowserWidget widget;
        QWebView *view = show(widget, m_launcher, m_server.url("/links.htm"), 1);
        QVERIFY(view);
        QCOMPARE(opened, QStringList());

        for (int i = 0; i < links.size(); ++i) {
            const QWebElement link = view->page()->mainFrame()->findFirstElement(QStringLiteral("#link%1").arg(i));
            QTest::mouseClick(view, Qt::LeftButton, Qt::NoModifier, link.geometry().center());
        }
        QCOMPARE(opened, links.mid(4));
        const QStringList lines = m_log.newLines().filter("CustomWebView::createWindow: ");
        QStringList refused;
        for (const QString &link : links.mid(0, 4))
            refused += lines.filter("Refused to hand over [" + link + "]");
        QCOMPARE(refused.size(), 4);
        // One line for the loop at load and one for the rest of each click's
        // loop, not one per request.
        QCOMPARE(lines.filter("no click").size(), 1 + links.size());

        // The one local address, a project's folder, is never a file to
        // start nor a path the desktop would read relative to its own.
        opened.clear();
        QTemporaryDir folder;
        QVERIFY(TestFiles::write(folder.filePath("scene.zmr"), "project"));
        QVERIFY(!DesktopHandOver::showFolder(folder.filePath("scene.zmr")));
        QVERIFY(!DesktopHandOver::showFolder("relative/folder"));
        QVERIFY(!DesktopHandOver::isAllowed(QUrl::fromLocalFile(folder.path())));
        QVERIFY(DesktopHandOver::showFolder(folder.path() + "/."));
        QCOMPARE(opened, QStringList { QUrl::fromLocalFile(folder.path()).toString() });
    }

    // A page behind a certificate that cannot be trusted is not shown; the
    // log names the reason, and the kept copy takes its place.
    void untrustedCertificateFailsThePage()
    {
        UntrustedTlsServer tls;
        QVERIFY(tls.start());
        const QString url = tls.url("/news.htm");
        m_log.mark();
        WebBrowserWidget widget;
        QWebView *view = show(widget, m_launcher, url, 2);
        QVERIFY(view);
        QCOMPARE(text(view), QString());
        QVERIFY(tls.handshakes() > 0);
        const QStringList lines = m_log.newLines();
        QVERIFY2(
            !lines.filter("WebBrowserWidget::certificateRefused: [" + url + "] Certificate not trusted: ").isEmpty(),
            qPrintable(lines.join('\n')));
        QVERIFY(lines.contains("WebBrowserWidget::loadFinished: Failed to load HTML: [" + url + "]"));
    }
};

ZANMIR_LAUNCHER_TEST_MAIN(TestWebPages)
#include "tst_webpages.moc"
