#include "applinfo.h"
#include "cataloguebuilder.h"
#include "installededitorwidget.h"
#include "launchertestmain.h"
#include "modalanswer.h"
#include "screeninfo.h"
#include "systemsettings.h"
#include "updatehistorywidget.h"

#include <QComboBox>
#include <QGraphicsView>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMessageBox>
#include <QRadioButton>
#include <QSignalSpy>
#include <QToolButton>

// The editor management page on a real launcher: a row per installed
// version with its star, default radio button, update mark and menu, the
// notice band above them, and the install control.
class TestManagePage : public ServedLauncherTestCase
{
    Q_OBJECT

public:
    using ServedLauncherTestCase::ServedLauncherTestCase;

private:
    QScopedPointer<InstalledEditorWidget> m_page;

    template<class T = QWidget> static T *child(const QWidget *parent, const char *name)
    {
        return parent->findChild<T *>(name);
    }
    QListWidget *list() const { return child<QListWidget>(m_page.data(), "listWidget"); }
    QWidget *row(int index) const { return list()->itemWidget(list()->item(index)); }
    static QRadioButton *radio(const QWidget *row) { return child<QRadioButton>(row, "radioDefaultEditor"); }
    // The versions of the rows in their order, "*" after one with the update mark.
    QString rows() const
    {
        QStringList rows;
        for (int index = 0; index < list()->count(); ++index) {
            const bool mark = child(row(index), "checkedIcon")->isVisibleTo(row(index));
            const bool none = child(row(index), "noCheckIcon")->isVisibleTo(row(index));
            rows.append(child<QLabel>(row(index), "labelApplVersion")->text() + (mark == none ? "?" : mark ? "*" : ""));
        }
        return rows.join(' ');
    }
    // Exactly those versions installed, nothing pinned or default, the
    // catalogue offering those entries, and the page made anew.
    bool showPage(const QStringList &installed, const QStringList &offered = QStringList())
    {
        for (const EditorInfo &editor : m_launcher->getInstalledEditors())
            m_launcher->deletePinnedVersionInfo(editor);
        m_launcher->unsetCurrentEditorInfo();
        QSettings(SystemSettings::uninstallRecordsFile(), QSettings::IniFormat).clear();
        m_profile->registerVersion("L0", "launcher", "release", "1.0.0.0");
        for (const QString &version : installed)
            m_profile->registerVersion("E" + version, "editor", "release", version);
        serve(CatalogueBuilder().entries(offered).bytes());
        m_page.reset(new InstalledEditorWidget);
        if (!m_launcher->saveLauncherState() || !m_launcher->prepareApplUpdater())
            return false;
        m_page->setProcessLauncher(m_launcher);
        m_page->rebuildRows();
        m_page->show();
        return QTest::qWaitForWindowExposed(m_page.data());
    }
    // Presses the row there and gives the entries of the menu that opens,
    // picking the one named, if any, as a user would, and else closing it.
    QStringList pressRow(QWidget *row, const QPoint &at, int button, const QString &pick = QString())
    {
        QStringList entries;
        QTimer user;
        connect(&user, &QTimer::timeout, [&]() {
            auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            if (!menu)
                return;
            user.stop();
            for (QAction *action : menu->actions())
                entries.append(action->text());
            const int picked = entries.indexOf(pick);
            if (picked < 0)
                menu->close();
            else
                QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(menu->actions().at(picked)).center());
        });
        user.start(10);
        QTest::mousePress(row, Qt::MouseButton(button), Qt::NoModifier, at);
        return entries;
    }

private slots:
    void initTestCase() { QVERIFY(startLauncher()); }

    void pageState_data()
    {
        QTest::addColumn<QStringList>("installed");
        QTest::addColumn<QStringList>("offered");
        QTest::addColumn<QString>("rows");
        QTest::addColumn<int>("band"); // the height of the notice band
        QTest::addColumn<QString>("notice"); // the text shown in it
        QTest::addColumn<QString>("badge"); // update in a series, higher series
        QTest::addColumn<QStringList>("logged"); // without "InstalledEditorWidget::setVersionDesc: "
        // clang-format off
        QTest::newRow("nothing installed") << QStringList() << QStringList { "editor 2.1.0.9" } << "" << 70 << "Installed editor does not exist.\nPlease install any editor." << "0 0" << QStringList();
        QTest::newRow("revision in the series") << QStringList { "2.1.0.5" } << QStringList { "editor 2.1.0.9" } << "2.1.0.5*" << 0 << "" << "1 0" << QStringList { "Update version found: 2.1.0.5 to 2.1.0.9" };
        QTest::newRow("higher series") << QStringList { "2.1.0.5" } << QStringList { "editor 2.2.0.1" } << "2.1.0.5" << 40 << "Recent version 2.2.0.1 is available." << "0 1" << QStringList { "Recent version found: 2.2.0.1" };
        QTest::newRow("both, for the second row") << QStringList { "2.1.0.5", "2.0.0.3" } << QStringList { "editor 2.3.0.0", "editor 2.0.0.4" } << "2.1.0.5 2.0.0.3*" << 40 << "Recent version 2.3.0.0 is available." << "1 1" << QStringList { "Recent version found: 2.3.0.0", "Update version found: 2.0.0.3 to 2.0.0.4" };
        QTest::newRow("revisions for both rows") << QStringList { "2.1.0.5", "2.0.0.3" } << QStringList { "editor 2.1.0.9", "editor 2.0.0.4" } << "2.1.0.5* 2.0.0.3*" << 0 << "" << "1 0" << QStringList { "Update version found: 2.1.0.5 to 2.1.0.9" };
        QTest::newRow("nothing newer") << QStringList { "2.1.0.5" } << QStringList { "editor 2.1.0.5" } << "2.1.0.5" << 0 << "" << "0 0" << QStringList();
        // clang-format on
    }

    void pageState()
    {
        QFETCH(QStringList, installed);
        QFETCH(QStringList, offered);
        QFETCH(QString, rows);
        QFETCH(int, band);
        QFETCH(QString, notice);
        QFETCH(QString, badge);
        QFETCH(QStringList, logged);
        QSignalSpy badges(m_launcher->getScreenInfo(), SIGNAL(signalUptodateVersionNoticed(bool, bool)));
        m_log.mark();
        QVERIFY(showPage(installed, offered));
        QCOMPARE(this->rows(), rows);
        auto *frame = child<QFrame>(m_page.data(), "contentsFrame");
        QCOMPARE(QSize(frame->minimumHeight(), frame->maximumHeight()), QSize(band, band));
        QString shown;
        for (const char *label : { "labelNoEditor", "labelRecentVersion" }) {
            if (child(frame, label)->isVisibleTo(m_page.data()))
                shown += child<QLabel>(frame, label)->text();
        }
        QCOMPARE(shown, notice);
        QCOMPARE(badges.count(), 1);
        QCOMPARE(QString("%1 %2").arg(badges.at(0).at(0).toInt()).arg(badges.at(0).at(1).toInt()), badge);
        QCOMPARE(m_log.newLines().filter("InstalledEditorWidget::"),
            logged.replaceInStrings(QRegularExpression("^"), "InstalledEditorWidget::setVersionDesc: "));
    }

    // It flips at once in the row pressed; the rows are made anew with the
    // pinned one in front.
    void starPinsAndMovesTheRow()
    {
        QVERIFY(showPage({ "2.2.0.1", "2.1.0.9", "2.1.0.5" }));
        QWidget *pressed = row(2);
        QTest::mousePress(child<QGraphicsView>(pressed, "noPinIconView")->viewport(), Qt::LeftButton);
        QVERIFY(child(pressed, "pinIconView")->isVisibleTo(pressed));
        QCOMPARE(rows(), QString("2.1.0.5 2.2.0.1 2.1.0.9"));
        QVERIFY(child(row(0), "pinIconView")->isVisibleTo(row(0)));
        QTest::mousePress(child<QGraphicsView>(row(0), "pinIconView")->viewport(), Qt::LeftButton);
        QCOMPARE(rows(), QString("2.2.0.1 2.1.0.9 2.1.0.5"));
    }

    void menuRegion_data()
    {
        QTest::addColumn<QPoint>("at"); // in row coordinates
        QTest::addColumn<int>("button");
        QTest::addColumn<bool>("opens");
        QTest::newRow("left margin") << QPoint(24, 40) << int(Qt::LeftButton) << false;
        QTest::newRow("top margin") << QPoint(100, 9) << int(Qt::LeftButton) << false;
        QTest::newRow("top left corner") << QPoint(25, 10) << int(Qt::LeftButton) << true;
        QTest::newRow("beyond the row") << QPoint(225, 110) << int(Qt::LeftButton) << true;
        QTest::newRow("right of the region") << QPoint(226, 40) << int(Qt::LeftButton) << false;
        QTest::newRow("below the region") << QPoint(100, 111) << int(Qt::LeftButton) << false;
        QTest::newRow("right button") << QPoint(100, 40) << int(Qt::RightButton) << true;
        QTest::newRow("middle button") << QPoint(100, 40) << int(Qt::MiddleButton) << false;
    }

    void menuRegion()
    {
        QFETCH(QPoint, at);
        QFETCH(int, button);
        QFETCH(bool, opens);
        QVERIFY(showPage({ "2.1.0.5" }));
        const QStringList entries { "Add to frequently used", "Make default on startup", "Update to recent version",
            "Show update histories", "Uninstall" };
        QCOMPARE(pressRow(row(0), at, button), opens ? entries : QStringList());
    }

    void defaultChoice_data()
    {
        QTest::addColumn<bool>("menu"); // the entry, or a click on the radio button
        QTest::addColumn<int>("index"); // of the row, 0 being the default
        QTest::addColumn<bool>("isDefault"); // afterwards
        QTest::newRow("entry on the default row") << true << 0 << false;
        QTest::newRow("radio on the default row") << false << 0 << true;
        QTest::newRow("entry on another row") << true << 1 << true;
        QTest::newRow("radio on another row") << false << 1 << true;
    }

    // The row's slot makes the page rebuild itself and then goes on in the
    // old row, which must still be there until the deferred deletes run.
    void defaultChoice()
    {
        QFETCH(bool, menu);
        QFETCH(int, index);
        QFETCH(bool, isDefault);
        QVERIFY(showPage({ "2.1.0.9", "2.1.0.5" }));
        const QList<EditorInfo> editors = m_launcher->getInstalledEditors();
        m_launcher->setCurrentEditorInfo(editors.first());
        QVERIFY(m_launcher->saveLauncherState());
        m_page->rebuildRows();

        QPointer<QWidget> old = row(index);
        if (menu)
            QVERIFY(pressRow(old, QPoint(100, 40), Qt::LeftButton, "Make default on startup").size() == 5);
        else
            radio(old)->click();
        QVERIFY(old && row(index) != old);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!old);
        QCOMPARE(m_launcher->getApplInfo()->isSelectedVersion(editors.at(index)), isDefault);
        QCOMPARE(radio(row(index))->isChecked(), isDefault);
    }

    // What a flow changed shows on a line of its own below the notice, and
    // goes with the next flow that changed nothing.
    void changeNote()
    {
        QVERIFY(showPage({ "2.1.0.5" }, { "editor 2.2.0.1" }));
        ScreenInfo *screen = m_launcher->getScreenInfo();
        auto *note = child<QLabel>(m_page.data(), "labelChangeNote");
        auto *frame = child<QFrame>(m_page.data(), "contentsFrame");
        emit screen->signalInstallationNoted("Vorlix Zanmir Editor ver 2.1.0.9 was installed.");
        emit screen->signalInstallationConfirmed();
        QVERIFY(note->isVisibleTo(m_page.data()));
        QCOMPARE(note->text(), QString("Vorlix Zanmir Editor ver 2.1.0.9 was installed."));
        // Below the newer series' line, which stays.
        QCOMPARE(note->y(), child<QLabel>(m_page.data(), "labelRecentVersion")->geometry().bottom() + 1);
        QCOMPARE(frame->maximumHeight(), 70);
        emit screen->signalInstallationNoted(QString());
        emit screen->signalInstallationConfirmed();
        QVERIFY(!note->isVisibleTo(m_page.data()));
        QCOMPARE(frame->maximumHeight(), 40);
    }

    // A refresh that comes while a row's flow has a dialog open (the daily
    // one, or the catalogue read again) waits for the flow to end: the row,
    // which owns the flow and its dialogs, stays, and the list is rebuilt
    // once afterwards.
    void refreshWaitsForTheFlow()
    {
        QVERIFY(showPage({ "2.1.0.5" }, { "editor 2.1.0.9" }));
        // An installer that installs nothing, slow to come, so that the
        // download dialog is seen.
        m_server.setAnswer("/v/2.1.0.9?t=pe1", HttpFixture::trickled("#!/bin/sh\nexit 0\n"));
        QSignalSpy refreshed(m_launcher->getScreenInfo(), SIGNAL(signalRefreshButtonClicked()));
        QPointer<QWidget> old = row(0);
        QStringList seen; // each window as the refresh fired, the refreshes so far, whether the row was there
        QPointer<QWidget> last;
        QTimer user;
        connect(&user, &QTimer::timeout, [&]() {
            QWidget *modal = QApplication::activeModalWidget();
            if (!modal || modal == last || qobject_cast<QMenu *>(modal))
                return;
            last = modal;
            m_launcher->refreshUpdateState();
            seen << QString("%1 %2 %3").arg(modal->windowTitle()).arg(refreshed.count()).arg(old ? "row" : "gone");
            QTimer::singleShot(0, modal, [modal]() {
                if (auto *history = qobject_cast<UpdateHistoryWidget *>(modal))
                    history->accept();
                else if (auto *box = qobject_cast<QMessageBox *>(modal))
                    (box->button(QMessageBox::Yes) ? box->button(QMessageBox::Yes) : box->button(QMessageBox::Ok))
                        ->click();
                // The download dialog ends by itself.
            });
        });
        user.start(10);
        QCOMPARE(pressRow(old, QPoint(100, 40), Qt::LeftButton, "Update to recent version").size(), 5);
        user.stop();
        QCOMPARE(seen,
            (QStringList {
                "Update editor (2.1.0.9) 0 row", "Downloading 0 row", "Confirm 0 row", "Information 0 row" }));
        QCOMPARE(refreshed.count(), 1);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!old);
        QCOMPARE(rows(), QString("2.1.0.5*"));
    }

    // activated, not a change of the current item: picking the item shown
    // already starts the install flow too.
    void pickingTheCurrentItemInstalls()
    {
        QVERIFY(showPage({}, { "editor 2.2.0.1", "editor 2.1.0.9" }));
        auto *combo = child<QComboBox>(m_page.data(), "versionSelectCombo");
        const QString version = combo->itemData(combo->currentIndex(), Qt::UserRole).toString();
        QCOMPARE(combo->currentText(), "release " + version);
        ModalAnswer answer; // closes the history dialog
        child<QToolButton>(m_page.data(), "editorInstallButton")->click();
        QTest::keyClick(combo->view(), Qt::Key_Return);
        QCOMPARE(answer.texts(), QStringList { "Install editor (" + version + ")" });
    }
};

ZANMIR_LAUNCHER_TEST_MAIN(TestManagePage)
#include "tst_managepage.moc"
