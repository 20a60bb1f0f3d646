#include "launchertestmain.h"
#include "webbrowserwidget.h"

#include <QDesktopServices>
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
};

ZANMIR_LAUNCHER_TEST_MAIN(TestWebPages)
#include "tst_webpages.moc"
