#include "applinfo.h"
#include "launchertestmain.h"
#include "modalanswer.h"
#include "preferencedialog.h"
#include "testfiles.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QToolButton>
#include <QTranslator>

// The preferences dialog: Apply buttons that remember a pending change, OK
// that asks only then, Cancel that never asks, and what reaches the file.
class TestPreferences : public LauncherTestCase
{
    Q_OBJECT

public:
    using LauncherTestCase::LauncherTestCase;

private:
    QTranslator m_translator;

    template<class T> static T *child(QDialog &dialog, const char *name) { return dialog.findChild<T *>(name); }
    QString storedLocale() const
    {
        return TestFiles::readObject(m_profile->managerFile()).value("1.0.0")["locale"].toString();
    }

private slots:
    void initTestCase()
    {
        m_profile->registerVersion("L0", "launcher", "release", "1.3.0.2");
        QVERIFY(m_launcher->initialize(m_translator));
    }

    void init()
    {
        QVERIFY(m_launcher->setLocale("en_US"));
        QVERIFY(m_launcher->setShowAllVersions(false));
    }

    void shown()
    {
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

    void closing_data()
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

    void closing()
    {
        QFETCH(QStringList, steps);
        QFETCH(int, answer);
        QFETCH(int, result);
        QFETCH(int, questions);
        QFETCH(QString, stored);
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
        QCOMPARE(storedLocale() + ' ' + QString::number(showAll), stored);
    }
};

ZANMIR_LAUNCHER_TEST_MAIN(TestPreferences)
#include "tst_preferences.moc"
