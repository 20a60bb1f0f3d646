#include "appllaunchwidget.h"
#include "downloaddialog.h"
#include "homeform.h"
#include "launchertestmain.h"
#include "launcherupdatewidget.h"
#include "menubuttonwidget.h"
#include "preferencedialog.h"
#include "stylesheet.h"
#include "testfiles.h"
#include "updatehistorywidget.h"
#include "versiondescwidget.h"
#include "webpage.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QToolButton>
#include <QTranslator>

// What the program carries in its resources: the style sheet against the
// forms it styles, and the Japanese catalogue against the sources.
class TestResources : public LauncherTestCase
{
    Q_OBJECT

public:
    using LauncherTestCase::LauncherTestCase;

private:
    // Selectors of the sheet for widgets this system does not have.
    const QStringList m_matchNothing { "FileDescWidget", "ThumbnailView", "HomeHeaderWidget", "frameHeader",
        "tabProxyServer", "LicenseRegisterDialog", "LicenseDeregisterDialog" };
    // The widgets of every form the program builds, kept alive for the check.
    // Tiles and rows go where the pages put them when versions are installed.
    static QList<QWidget *> buildForms()
    {
        auto *form = new HomeForm;
        form->makeWebPages();
        new ApplLaunchWidget(form->findChild<QWidget *>("launchButtonWidget")->findChild<QWidget *>("listWidget"));
        new VersionDescWidget(form->findChild<QWidget *>("widgetInstalledEditor")->findChild<QWidget *>("listWidget"));
        return { form, new PreferenceDialog, new UpdateHistoryWidget, new LauncherUpdateWidget,
            new DownloadDialog(false), new MissingWebPage(QString()) };
    }

    // Whether the widget is of that class (or a subclass) and has that name;
    // either may be empty.
    static bool matches(const QWidget *widget, const QString &cls, const QString &name)
    {
        return (cls.isEmpty() || widget->inherits(cls.toLatin1().constData()))
            && (name.isEmpty() || widget->objectName() == name);
    }

    // Whether some widget matches a descendant selector such as "A B#c".
    static bool anyMatches(const QList<QWidget *> &widgets, const QStringList &compounds)
    {
        for (const QWidget *widget : widgets) {
            int index = compounds.size() - 1;
            if (!matches(widget, compounds[index].section('#', 0, 0), compounds[index].section('#', 1)))
                continue;
            for (const QWidget *up = widget->parentWidget(); up && index > 0; up = up->parentWidget()) {
                if (matches(up, compounds[index - 1].section('#', 0, 0), compounds[index - 1].section('#', 1)))
                    --index;
            }
            if (index == 0)
                return true;
        }
        return false;
    }

private slots:
    void initTestCase() { m_profile->registerVersion("L0", "launcher", "release", "1.0.0.0"); }

    // The rules for the pages, menu strip, tiles, rows and dialogs name only
    // what the forms build, in the places where they build it, so a renamed
    // or moved object does not lose its style unnoticed.
    void styleSheetNamesWhatTheFormsBuild()
    {
        QString sheet = QString::fromUtf8(TestFiles::read(StyleSheet::defaultPath()));
        sheet.remove(QRegularExpression("/\\*.*?\\*/", QRegularExpression::DotMatchesEverythingOption));
        sheet = sheet.mid(sheet.indexOf("HomeForm#HomeForm"));
        QVERIFY(!sheet.isEmpty());
        const QList<QWidget *> roots = buildForms();
        QList<QWidget *> widgets = roots;
        for (QWidget *root : roots)
            widgets += root->findChildren<QWidget *>();
        QStringList unknown;
        const QRegularExpression rule("([^{}]+)\\{[^}]*\\}");
        for (auto it = rule.globalMatch(sheet); it.hasNext();) {
            for (const QString &selector : it.next().captured(1).split(',', Qt::SkipEmptyParts)) {
                QStringList compounds = selector.split(QRegularExpression("\\s+"), Qt::SkipEmptyParts);
                // States and dynamic properties are the widgets' own at run time.
                compounds.replaceInStrings(QRegularExpression("[:\\[].*$"), QString());
                const bool deliberate = std::any_of(compounds.cbegin(), compounds.cend(), [this](const QString &c) {
                    return m_matchNothing.contains(c.section('#', 0, 0)) || m_matchNothing.contains(c.section('#', 1));
                });
                // Two entries of the install button's hover rule run together
                // for want of a comma, so that it never matches: kept so.
                const bool runTogether = compounds.count("EditorInstallWidget") == 2;
                if (!deliberate && !runTogether && !anyMatches(widgets, compounds))
                    unknown.append(compounds.join(' '));
            }
        }
        qDeleteAll(roots);
        unknown.removeDuplicates();
        QCOMPARE(unknown.join(" | "), QString());
    }

    // Every icon has a twice as large twin for a screen scaled to 200 %,
    // beside it under the name that Qt looks for there.
    void iconsHaveTwiceTheirSize()
    {
        const QStringList files = QDir(":/icons").entryList(QDir::Files);
        QVERIFY(files.size() > 10);
        for (const QString &file : files) {
            if (file.contains("@2x"))
                continue;
            const QString path = ":/icons/" + file, twin = QString(path).replace(".png", "@2x.png");
            QVERIFY2(files.contains(QFileInfo(twin).fileName()), qPrintable(twin));
            QCOMPARE(QImage(twin).size(), QImage(path).size() * 2);
        }
    }

    void catalogue_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("captions"); // the menu strip, from Home to Refresh
        // clang-format off
        QTest::newRow("ja_JP") << "ja_JP" << "ホーム 新着情報 使い方 アプリ管理 ライセンス 設定 再読み込み";
        QTest::newRow("en_US") << "en_US" << "Home Information HowToUse ManageAppl ManageLicense Preference Refresh";
        QTest::newRow("no catalogue") << "xx_XX" << "Home Information HowToUse ManageAppl ManageLicense Preference Refresh";
        // clang-format on
    }

    void catalogue()
    {
        QFETCH(QString, locale);
        QFETCH(QString, captions);
        QTranslator translator;
        QCOMPARE(ProcessLauncher::loadTranslator(translator, locale), locale == "ja_JP");
        MenuButtonWidget strip;
        QStringList shown;
        for (const char *name :
            { "buttonHome", "buttonInfo", "buttonHelp", "buttonAppl", "buttonLicense", "buttonPref", "buttonRefresh" })
            shown.append(strip.findChild<QToolButton *>(name)->text());
        QCOMPARE(shown.join(' '), captions);
        // The product name stays in Latin letters.
        QCOMPARE(HomeForm().windowTitle(), QString("Zanmir Launcher"));
    }

    // Every text of the sources is in the catalogue, translated.
    void catalogueIsComplete()
    {
        QTemporaryDir dir;
        const QString copy = dir.filePath("launcherapp_ja_JP.ts");
        QVERIFY(QFile::copy(ZANMIR_TS_FILE, copy));
        QProcess lupdate;
        lupdate.start(ZANMIR_LUPDATE, { "-locations", "none", ZANMIR_SOURCE_DIR, "-ts", copy });
        QVERIFY(lupdate.waitForFinished(60000) && lupdate.exitCode() == 0);
        const QString updated = QString::fromUtf8(TestFiles::read(copy));
        QStringList unfinished;
        const QRegularExpression open("<source>([^<]*)</source>\\s*<translation type=\"unfinished\"");
        for (auto it = open.globalMatch(updated); it.hasNext();)
            unfinished.append(it.next().captured(1));
        QCOMPARE(unfinished, QStringList());
        QVERIFY(!updated.contains("type=\"vanished\"") && !updated.contains("type=\"obsolete\""));
    }
};

ZANMIR_LAUNCHER_TEST_MAIN(TestResources)
#include "tst_resources.moc"
