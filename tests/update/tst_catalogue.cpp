#include "applupdater.h"
#include "cataloguebuilder.h"
#include "editorinfo.h"
#include "registry.h"
#include "systemsettings.h"
#include "testprofile.h"

#include <QJsonObject>
#include <QtTest>

class TestCatalogue : public QObject
{
    Q_OBJECT

private:
    TestProfile m_profile;
    Registry m_registry { m_profile.catalogueFile() };
    ApplUpdater m_updater { nullptr };

    void load(const CatalogueBuilder &catalogue)
    {
        QVERIFY2(m_updater.setUpdateInfo(QString::fromUtf8(catalogue.bytes())), qPrintable(m_updater.getErrorText()));
    }
    QStringList versionsOf(const QString &type) const { return CatalogueBuilder::versions(m_updater.getUpdates(type)); }

private slots:
    void init()
    {
        QFile::remove(SystemSettings::uninstallRecordsFile());
        QDir().mkpath(m_profile.dataHome() + "/Vorlix");
        QVERIFY(m_registry.read());
        m_updater.setRegistry(&m_registry);
    }

    void parsingKeepsWhatItCan()
    {
        // A stamp of no type or without a url is skipped.
        const CatalogueBuilder good = CatalogueBuilder()
                                          .entries({ "editor 2.1.0.5" })
                                          .web("newsweb", "1.0.0.0", "")
                                          .web("", "2.0.0.0", "/other.htm")
                                          .web("newsweb", "2.0.0.0", "/news.htm");
        // No text at all (server down, no offline copy) is the empty catalogue.
        load(good);
        QVERIFY(m_updater.setUpdateInfo(QString()));
        QVERIFY(versionsOf("editor").isEmpty());

        load(good);
        QVERIFY(!m_updater.setUpdateInfo("{ not json"));
        QVERIFY(m_updater.getErrorText().startsWith("Failed to parse JSON document: code["));
        QCOMPARE(versionsOf("editor"), QStringList { "2.1.0.5" });
        QCOMPARE(m_updater.getWebUpdateInfo("newsweb").getUrl(), QStringLiteral("/news.htm"));
        QCOMPARE(m_updater.getWebUpdateInfo("howtoweb").getType() + m_updater.getWebUpdateInfo("howtoweb").getVersion(),
            QStringLiteral("howtoweb"));

        // Without its schema object the document empties the catalogue, silently.
        const QString previousError = m_updater.getErrorText();
        QVERIFY(!m_updater.setUpdateInfo("{\"2.0.0\": {}}"));
        QCOMPARE(m_updater.getErrorText(), previousError);
        QVERIFY(versionsOf("editor").isEmpty());

        const QJsonArray targets { QJsonObject { { "target", "win64" }, { "url", "/1.exe" }, { "filename", "1.exe" } },
            QJsonObject { { "target", "macosx" }, { "url", "/mac.dmg" } },
            QJsonObject { { "target", "win64" }, { "url", "/2.exe" }, { "filename", "2.exe" } } };
        load(CatalogueBuilder()
                 .update("editor", "release", QString())
                 .update("editor", QString(), "3.0.0.0")
                 .update("editor", "release", "2.1.0.5", targets));
        // Incomplete entries stay, as empty records of no type.
        QCOMPARE(versionsOf("editor"), QStringList { "2.1.0.5" });
        QCOMPARE(versionsOf(QString()), (QStringList { QString(), QString() }));
        const ApplUpdateInfo entry = m_updater.getUpdates("editor").first();
        QCOMPARE(entry.getUrl("win64") + entry.getFileName("win64") + entry.getUrl("macosx"), QString("/2.exe2.exe"));
    }

    void searches_data()
    {
        // For "update" and "recent" the first installed version is asked about.
        QTest::addColumn<QString>("installed");
        QTest::addColumn<QString>("catalogue");
        QTest::addColumn<QString>("search");
        QTest::addColumn<QString>("found");
        const QString series = "editor 2.1.5, editor 2.1.7, editor 2.2.0";
        const QString launchers = "editor 2.0.0.0, launcher 1.1.0.0";
        // clang-format off
        QTest::newRow("update: first in series") << "editor release 2.1.3" << series << "update" << "2.1.5";
        QTest::newRow("update: newer build installed")
            << "editor release 2.1.3, editor release 2.1.5" << "editor 2.1.5, editor 2.1.4" << "update" << "";
        QTest::newRow("update: other edition") << "editor beta 3.0.1" << "editor 3.0.2" << "update" << "";
        QTest::newRow("update: launcher") << "launcher release 2.1.3" << "launcher 2.1.5" << "update" << "";
        // "1.10" sorts before "1.9" as text, so it is no later series.
        QTest::newRow("recent: text order") << "editor release 1.9.0.0" << "editor 1.10.0.0, editor 1.9.5.0" << "recent" << "";
        QTest::newRow("recent: later series")
            << "editor release 1.9.0.0" << "editor 1.9.5.0, editor 3.0.0.0, editor 2.0.0.0" << "recent" << "3.0.0.0";
        QTest::newRow("latest: nothing installed, any type") << "" << launchers << "latest" << "2.0.0.0";
        QTest::newRow("latest: newer launcher") << "launcher release 1.0.0.0" << launchers << "latest" << "1.1.0.0";
        QTest::newRow("latest: equal launcher") << "launcher release 1.1.0.0" << launchers << "latest" << "";
        // clang-format on
    }

    void searches()
    {
        QFETCH(QString, installed);
        QFETCH(QString, catalogue);
        QFETCH(QString, search);
        QFETCH(QString, found);
        const QStringList versions = installed.split(", ", Qt::SkipEmptyParts);
        for (const QString &version : versions) {
            const QStringList parts = version.split(' ');
            m_profile.registerVersion(parts.join('_'), parts.at(0), parts.at(1), parts.at(2));
        }
        load(CatalogueBuilder().entries(catalogue.split(", ")));
        const QStringList asked = versions.value(0).split(' ');
        ApplUpdateInfo result = m_updater.findLatestFor("launcher");
        if (search == QLatin1String("update"))
            result = m_updater.findUpdateFor(EditorInfo(asked.at(0), asked.at(1), asked.at(2)));
        else if (search == QLatin1String("recent"))
            result = m_updater.findRecentFor(EditorInfo(asked.at(0), asked.at(1), asked.at(2)));
        QCOMPARE(result.getVersion(), found);
    }

    void installableEditors()
    {
        load(CatalogueBuilder().entries({ "editor 2.1.0.7", "editor 2.1.0.5", "editor 3", "editor 2.2.0.1",
            "editor 2.1.0.9 beta", "editor 1.0.0.0", "launcher 9.0.0.0" }));
        // Installed in another edition still hides the version text.
        const QList<EditorInfo> installed { EditorInfo("editor", "inhouse", "1.0.0.0") };
        // One per series, the first in the catalogue; a one-number version has no series.
        QCOMPARE(CatalogueBuilder::versions(m_updater.getInstallableEditors(installed, false)),
            (QStringList { "2.2.0.1", "2.1.0.7" }));
        QCOMPARE(CatalogueBuilder::versions(m_updater.getInstallableEditors(installed, true)),
            (QStringList { "3", "2.2.0.1", "2.1.0.9", "2.1.0.7", "2.1.0.5" }));
    }

    void downloadInfo()
    {
        load(
            CatalogueBuilder()
                .entries({ "editor 2.1.0.5", "editor 2.1.0.6 inhouse", "editor 2.1.0.6d inhouse" })
                .update("editor", "release", "2.1.0.7",
                    QJsonArray { QJsonObject { { "target", "macosx" }, { "url", "/mac" }, { "filename", "m.dmg" } } }));
        QString name, display, url, file;
        QVERIFY(m_updater.findDownloadInfo("2.1.0.5", name, display, url, file));
        QCOMPARE(QStringList({ name, display, url, file }),
            QStringList({ "release", "2.1.0.5", "/Zanmir/Installer/2.1.0.5/setup.exe", "ZanmirSetup_2.1.0.5.exe" }));
        // An in-house build is looked up by its display version, with the "d".
        QVERIFY(m_updater.findDownloadInfo("2.1.0.6", name, display, url, file));
        QCOMPARE(url, QStringLiteral("/Zanmir/Installer/2.1.0.6d/setup.exe"));

        const QString prefix = "Download failed: unknown URL or file name: ";
        QVERIFY(!m_updater.findDownloadInfo("2.1.0.7", name, display, url, file));
        QCOMPARE(m_updater.getErrorText(), prefix + "editor 2.1.0.7 (win64)");
        QVERIFY(!m_updater.findDownloadInfo(QString(), name, display, url, file));
        QCOMPARE(m_updater.getErrorText(), prefix + "editor 2.1.0.7 (win64)");
    }
};

QTEST_GUILESS_MAIN(TestCatalogue)
#include "tst_catalogue.moc"
