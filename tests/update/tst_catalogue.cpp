#include "applupdater.h"
#include "cataloguebuilder.h"
#include "editorinfo.h"
#include "registry.h"
#include "testprofile.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <memory>

static QStringList versions(const QList<ApplUpdateInfo> &updates)
{
    QStringList result;
    for (const ApplUpdateInfo &update : updates)
        result.append(update.getVersion());
    return result;
}

class TestCatalogue : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestProfile> m_profile;
    std::unique_ptr<Registry> m_registry;
    std::unique_ptr<ApplUpdater> m_updater;

    void install(const QString &type, const QString &edition, const QString &version)
    {
        const QString family = type == QLatin1String("launcher") ? QStringLiteral("Vorlix Zanmir Launcher")
                                                                  : QStringLiteral("Vorlix Zanmir Editor");
        m_profile->registerApplication(QStringLiteral("%1_%2_%3").arg(type, edition, version),
                                       {{"DisplayName", family + QLatin1Char(' ') + version},
                                        {"AppType", type},
                                        {"AppName", family},
                                        {"AppEdition", edition},
                                        {"AppVersion", version},
                                        {"EditorPath", QStringLiteral("/opt/zanmir/%1/editor").arg(version)},
                                        {"UninstallString", QStringLiteral("/opt/zanmir/%1/uninstall").arg(version)}});
    }

    void load(const CatalogueBuilder &catalogue)
    {
        QVERIFY2(m_updater->setUpdateInfo(catalogue.text()), qPrintable(m_updater->getErrorText()));
    }

    static EditorInfo release(const QString &version)
    {
        return EditorInfo(QStringLiteral("editor"), QStringLiteral("release"), version);
    }

private slots:
    void init()
    {
        m_profile = std::make_unique<TestProfile>();
        QDir().mkpath(m_profile->dataHome() + QStringLiteral("/Vorlix"));
        m_registry = std::make_unique<Registry>(m_profile->dataHome() + QStringLiteral("/Vorlix/ZanmirApplications.json"));
        QVERIFY(m_registry->read());
        m_updater = std::make_unique<ApplUpdater>(nullptr);
        m_updater->setRegistry(m_registry.get());
    }

    void cleanup()
    {
        m_updater.reset();
        m_registry.reset();
        m_profile.reset();
    }

    void parsingKeepsOldCatalogueOnBadText()
    {
        load(CatalogueBuilder().editor(QStringLiteral("2.1.0.5")).web(QStringLiteral("newsweb"), QStringLiteral("1.0"),
                                                                      QStringLiteral("/news.htm")));
        QCOMPARE(m_updater->getInfoText(), QStringLiteral("ApplUpdateInfo set."));

        QVERIFY(!m_updater->setUpdateInfo(QStringLiteral("{ not json")));
        QVERIFY(m_updater->getErrorText().startsWith(QStringLiteral("Failed to parse JSON document: code[")));
        QCOMPARE(versions(m_updater->getUpdates(QStringLiteral("editor"))), QStringList{"2.1.0.5"});
        QCOMPARE(m_updater->getWebUpdateInfo(QStringLiteral("newsweb")).getUrl(), QStringLiteral("/news.htm"));

        // A document without its schema object empties the catalogue, silently.
        const QString previousError = m_updater->getErrorText();
        QVERIFY(!m_updater->setUpdateInfo(QStringLiteral("{\"2.0.0\": {}}")));
        QCOMPARE(m_updater->getErrorText(), previousError);
        QVERIFY(m_updater->getUpdates(QStringLiteral("editor")).isEmpty());

        // No text at all (server down, no offline copy) is the empty catalogue.
        QVERIFY(m_updater->setUpdateInfo(QString()));
        QVERIFY(m_updater->getUpdates(QStringLiteral("editor")).isEmpty());
        QVERIFY(m_updater->getWebUpdateInfo(QStringLiteral("howtoweb")).getVersion().isEmpty());
    }

    void incompleteEntriesAndTargets()
    {
        const QJsonArray targets{
            QJsonObject{{"target", "win64"}, {"url", "/first.exe"}, {"filename", "first.exe"}},
            QJsonObject{{"target", "macosx"}, {"url", "/mac.dmg"}},
            QJsonObject{{"target", "win64"}, {"url", "/second.exe"}, {"filename", "second.exe"}},
        };
        load(CatalogueBuilder()
                 .update(QStringLiteral("editor"), QStringLiteral("release"), QString())
                 .update(QStringLiteral("editor"), QString(), QStringLiteral("3.0.0.0"))
                 .update(QStringLiteral("editor"), QStringLiteral("release"), QStringLiteral("2.1.0.5"), targets));

        // Incomplete entries stay as empty records of no type.
        QCOMPARE(versions(m_updater->getUpdates(QStringLiteral("editor"))), QStringList{"2.1.0.5"});
        QCOMPARE(versions(m_updater->getUpdates(QString())), (QStringList{QString(), QString()}));

        const ApplUpdateInfo entry = m_updater->getUpdates(QStringLiteral("editor")).first();
        QCOMPARE(entry.getUrl(QStringLiteral("win64")), QStringLiteral("/second.exe"));
        QCOMPARE(entry.getFileName(QStringLiteral("win64")), QStringLiteral("second.exe"));
        QVERIFY(entry.getUrl(QStringLiteral("macosx")).isEmpty());
        QVERIFY(entry.getEdition().isEmpty());
        QVERIFY(!entry.isPublicVersion());
    }

    void updateWithinSeriesTakesFirstQualifying()
    {
        install(QStringLiteral("editor"), QStringLiteral("release"), QStringLiteral("2.1.3"));
        load(CatalogueBuilder()
                 .editor(QStringLiteral("2.1.5"))
                 .editor(QStringLiteral("2.1.7"))
                 .editor(QStringLiteral("2.2.0")));
        QCOMPARE(m_updater->findUpdateFor(release(QStringLiteral("2.1.3"))).getVersion(), QStringLiteral("2.1.5"));

        // A newer installed build of the series is the base of comparison.
        install(QStringLiteral("editor"), QStringLiteral("release"), QStringLiteral("2.1.5"));
        load(CatalogueBuilder().editor(QStringLiteral("2.1.5")).editor(QStringLiteral("2.1.4")));
        QVERIFY(m_updater->findUpdateFor(release(QStringLiteral("2.1.3"))).isEmpty());

        // Launchers get no editor-style update, and other editions none at all.
        QVERIFY(m_updater->findUpdateFor(EditorInfo(QStringLiteral("launcher"), QStringLiteral("release"),
                                                    QStringLiteral("2.1.3")))
                    .isEmpty());
        install(QStringLiteral("editor"), QStringLiteral("beta"), QStringLiteral("3.0.1"));
        load(CatalogueBuilder().editor(QStringLiteral("3.0.2")));
        QVERIFY(m_updater->findUpdateFor(EditorInfo(QStringLiteral("editor"), QStringLiteral("beta"),
                                                    QStringLiteral("3.0.1")))
                    .isEmpty());
    }

    void recentSeriesUsesTextOrder()
    {
        install(QStringLiteral("editor"), QStringLiteral("release"), QStringLiteral("1.9.0.0"));
        load(CatalogueBuilder().editor(QStringLiteral("1.10.0.0")).editor(QStringLiteral("1.9.5.0")));
        // "1.10" sorts before "1.9" as text, so it is no later series.
        QVERIFY(m_updater->findRecentFor(release(QStringLiteral("1.9.0.0"))).isEmpty());

        load(CatalogueBuilder()
                 .editor(QStringLiteral("1.9.5.0"))
                 .editor(QStringLiteral("3.0.0.0"))
                 .editor(QStringLiteral("2.0.0.0")));
        QCOMPARE(m_updater->findRecentFor(release(QStringLiteral("1.9.0.0"))).getVersion(), QStringLiteral("3.0.0.0"));
    }

    void latestLauncher()
    {
        load(CatalogueBuilder()
                 .editor(QStringLiteral("2.0.0.0"))
                 .update(QStringLiteral("launcher"), QStringLiteral("Vorlix Zanmir Launcher"), QStringLiteral("1.1.0.0")));
        // Nothing installed: the first entry qualifies, whatever its type.
        QCOMPARE(m_updater->findLatestFor(QStringLiteral("launcher")).getApplType(), QStringLiteral("editor"));

        install(QStringLiteral("launcher"), QStringLiteral("release"), QStringLiteral("1.0.0.0"));
        QCOMPARE(m_updater->findLatestFor(QStringLiteral("launcher")).getVersion(), QStringLiteral("1.1.0.0"));

        install(QStringLiteral("launcher"), QStringLiteral("release"), QStringLiteral("1.1.0.0"));
        QVERIFY(m_updater->findLatestFor(QStringLiteral("launcher")).isEmpty());
    }

    void installableEditors_data()
    {
        QTest::addColumn<bool>("showAll");
        QTest::addColumn<QStringList>("expected");
        // Catalogue: 2.1.0.7, 2.1.0.5, 3, 2.2.0.1, 2.1.0.9 beta-named, 1.0.0.0 (installed)
        QTest::newRow("one per series, first in catalogue") << false << QStringList{"2.2.0.1", "2.1.0.7"};
        QTest::newRow("show all") << true << QStringList{"3", "2.2.0.1", "2.1.0.9", "2.1.0.7", "2.1.0.5"};
    }

    void installableEditors()
    {
        QFETCH(bool, showAll);
        QFETCH(QStringList, expected);
        load(CatalogueBuilder()
                 .editor(QStringLiteral("2.1.0.7"))
                 .editor(QStringLiteral("2.1.0.5"))
                 .editor(QStringLiteral("3"))
                 .editor(QStringLiteral("2.2.0.1"))
                 .editor(QStringLiteral("2.1.0.9"), QStringLiteral("beta"))
                 .editor(QStringLiteral("1.0.0.0"))
                 .update(QStringLiteral("launcher"), QStringLiteral("L"), QStringLiteral("9.0.0.0")));
        // Installed in another edition still hides the version text.
        const QList<EditorInfo> installed{EditorInfo(QStringLiteral("editor"), QStringLiteral("inhouse"),
                                                     QStringLiteral("1.0.0.0"))};
        QCOMPARE(versions(m_updater->getInstallableEditors(installed, showAll)), expected);
    }

    void downloadInfo()
    {
        load(CatalogueBuilder()
                 .editor(QStringLiteral("2.1.0.5"))
                 .editor(QStringLiteral("2.1.0.6"), QStringLiteral("inhouse"))
                 .update(QStringLiteral("editor"), QStringLiteral("inhouse"), QStringLiteral("2.1.0.6d"))
                 .update(QStringLiteral("editor"), QStringLiteral("release"), QStringLiteral("2.1.0.7"),
                         QJsonArray{QJsonObject{{"target", "macosx"}, {"url", "/mac"}, {"filename", "m.dmg"}}}));

        QString name, display, url, file;
        QVERIFY(m_updater->findDownloadInfo(QStringLiteral("2.1.0.5"), name, display, url, file));
        QCOMPARE(name, QStringLiteral("release"));
        QCOMPARE(display, QStringLiteral("2.1.0.5"));
        QCOMPARE(url, QStringLiteral("/Zanmir/Installer/2.1.0.5/setup.exe"));
        QCOMPARE(file, QStringLiteral("ZanmirSetup_2.1.0.5.exe"));

        // An in-house build is looked up by its display version, with the "d".
        QVERIFY(m_updater->findDownloadInfo(QStringLiteral("2.1.0.6"), name, display, url, file));
        QCOMPARE(display, QStringLiteral("2.1.0.6d"));
        QCOMPARE(url, QStringLiteral("/Zanmir/Installer/2.1.0.6d/setup.exe"));

        url.clear();
        QVERIFY(!m_updater->findDownloadInfo(QStringLiteral("2.1.0.7"), name, display, url, file));
        QCOMPARE(m_updater->getErrorText(),
                 QStringLiteral("Download failed: unknown URL or file name: editor 2.1.0.7 (win64)"));
        QVERIFY(url.isEmpty());

        QVERIFY(!m_updater->findDownloadInfo(QStringLiteral("9.9"), name, display, url, file));
        QCOMPARE(m_updater->getErrorText(), QStringLiteral("Download failed: unknown URL or file name:   (win64)"));

        const QString before = m_updater->getErrorText();
        QVERIFY(!m_updater->findDownloadInfo(QString(), name, display, url, file));
        QCOMPARE(m_updater->getErrorText(), before);
    }

    void webStamps()
    {
        load(CatalogueBuilder()
                 .web(QStringLiteral("newsweb"), QStringLiteral("1.0.0.0"), QString())
                 .web(QStringLiteral("newsweb"), QStringLiteral("2.0.0.0"), QStringLiteral("/news2.htm"))
                 .web(QString(), QStringLiteral("3.0.0.0"), QStringLiteral("/x.htm")));
        const WebUpdateInfo news = m_updater->getWebUpdateInfo(QStringLiteral("newsweb"));
        QCOMPARE(news.getVersion(), QStringLiteral("2.0.0.0"));
        QCOMPARE(news.getUrl(), QStringLiteral("/news2.htm"));

        const WebUpdateInfo help = m_updater->getWebUpdateInfo(QStringLiteral("howtoweb"));
        QCOMPARE(help.getType(), QStringLiteral("howtoweb"));
        QVERIFY(help.getVersion().isEmpty());
        // A stamp without numbers never makes a stored one look old.
        const WebUpdateInfo stored(QStringLiteral("howtoweb"), QStringLiteral("0.0.0.0"), QString());
        QVERIFY(stored.compareVersion(help) > 0);
    }
};

QTEST_GUILESS_MAIN(TestCatalogue)
#include "tst_catalogue.moc"
