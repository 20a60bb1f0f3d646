#include "editordocmanager.h"
#include "editorinfo.h"
#include "sampleproject.h"

#include <QDir>
#include <QImage>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QString v(quint16 a, quint16 b, quint16 c, quint16 d)
{
    return SampleProject::packVersion(a, b, c, d);
}

QByteArray lines(const QStringList &list)
{
    return list.join(QLatin1Char('\n')).toUtf8() + '\n';
}

const QString kMarker = QStringLiteral("22 serialization::archive 17");
const QString kGood = v(2, 3, 4, 5);

QString header(const QString &version, const QString &formatVer = QStringLiteral("12"),
    const QString &signature = QStringLiteral("zmr"))
{
    return QStringLiteral("0 0 %1 %2 %3").arg(signature, formatVer, version);
}

QByteArray xml(const QString &body)
{
    return QByteArrayLiteral("<?xml version=\"1.0\"?>\n") + body.toUtf8();
}

QByteArray xmlText(const QString &version, const QString &formatVer = QStringLiteral("1"),
    const QString &signature = QStringLiteral("zmr"))
{
    return SampleProject::xmlText(version, formatVer, signature);
}

} // namespace

// Reading the editor version out of both project forms, through the manager
// as the open-with flow does. An empty expected version means "refused".
class TestReader : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    int m_fileCount = 0;

    QString newPath(const QString &suffix)
    {
        return m_dir.filePath(QStringLiteral("p%1.%2").arg(++m_fileCount).arg(suffix));
    }

    static void checkRead(const QString &path, const QString &version)
    {
        EditorDocManager manager(nullptr, path);
        QVERIFY(manager.createDocument());
        EditorInfo info;
        QCOMPARE(manager.getEditorInfo(info, QDateTime()), !version.isEmpty());
        // A failed read still fills the record, with the defaults.
        QCOMPARE(info.getEdition(), QStringLiteral("release"));
        QCOMPARE(info.getVersion(), version.isEmpty() ? QStringLiteral("0.1.00") : version);
    }

private slots:
    void documentKind_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("kind");

        QTest::newRow("zmr") << "a.zmr" << 0;
        QTest::newRow("ZMR") << "b.ZMR" << 0;
        QTest::newRow("xml") << "c.xml" << 1;
        QTest::newRow("Xml") << "d.Xml" << 1;
        QTest::newRow("txt") << "e.txt" << 2;
        QTest::newRow("second suffix after zmr") << "f.zmr.bak" << 2;
    }

    void documentKind()
    {
        QFETCH(QString, name);
        QFETCH(int, kind);

        const QString path = m_dir.filePath(name);
        if (kind < 2)
            QVERIFY(SampleProject::writeProject(path, QStringLiteral("4.0.2.1")));
        else
            QVERIFY(SampleProject::writeFile(path, SampleProject::documentText(kGood)));
        EditorDocManager manager(nullptr, path);
        QCOMPARE(EditorDocManager::documentKind(name), kind);
        QCOMPARE(manager.createDocument(), kind < 2);
        // Without a document the record is left as it was.
        EditorInfo info(QStringLiteral("editor"), QStringLiteral("inhouse"), QStringLiteral("9.9.9.9"));
        QCOMPARE(manager.getEditorInfo(info, QDateTime()), kind < 2);
        QCOMPARE(info.getVersion(), kind < 2 ? QStringLiteral("4.0.02") : QStringLiteral("9.9.9.9"));
    }

    void compressedHeader_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("version");

        QTest::newRow("header at the top") << lines({ kMarker, header(kGood) }) << "2.3.04";
        QTest::newRow("version word 0") << lines({ kMarker, header("0") }) << "0.5.00";
        QTest::newRow("A0 B5 C1 D2") << lines({ kMarker, header(v(0, 5, 1, 2)) }) << "0.5.01";
        QTest::newRow("A0 B4 counts as 0.5.00") << lines({ kMarker, header(v(0, 4, 9, 7)) }) << "0.5.00";
        QTest::newRow("A1 B0 is no old version") << lines({ kMarker, header(v(1, 0, 3, 0)) }) << "1.0.03";
        QTest::newRow("C of three digits") << lines({ kMarker, header(v(3, 1, 123, 4)) }) << "3.1.123";
        QTest::newRow("letters as version") << lines({ kMarker, header("abc") }) << "0.5.00";
        QTest::newRow("formatVer 11") << lines({ kMarker, header(kGood, "11") }) << "";
        QTest::newRow("formatVer 12") << lines({ kMarker, header(kGood, "12") }) << "2.3.04";
        QTest::newRow("wrong signature") << lines({ kMarker, header(kGood, "12", "zmx") }) << "";
        QTest::newRow("no marker") << lines({ header(kGood), header(kGood) }) << "";
        QTest::newRow("marker on line 5, header on 6")
            << lines({ "a", "b", "c", "d", kMarker, header(kGood) }) << "2.3.04";
        QTest::newRow("marker on line 6, header on 7")
            << lines({ "a", "b", "c", "d", "e", kMarker, header(kGood) }) << "";
        QTest::newRow("header on line 7") << lines({ kMarker, "1", "2", "3", "4", "5", header(kGood) }) << "";
        QTest::newRow("lines under five words skipped") << lines({ kMarker, "0 0 zmr 12", header(kGood) }) << "2.3.04";
        QTest::newRow("marker line of five words is no header")
            << lines({ "22 serialization::archive zmr 12 " + v(1, 1, 1, 1), header(kGood) }) << "2.3.04";
        QTest::newRow("wrong-signature header ends the search")
            << lines({ kMarker, header(v(1, 1, 1, 1), "12", "abc"), header(kGood) }) << "";
    }

    void compressedHeader()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, version);

        const QString path = newPath(QStringLiteral("zmr"));
        QVERIFY(SampleProject::writeArchive(path, { { QStringLiteral("document.txt"), text } }));
        checkRead(path, version);
    }

    void compressedArchive_data()
    {
        // Contents without names are written as a plain file, not an archive.
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QByteArrayList>("contents");
        QTest::addColumn<bool>("accepted");

        const QByteArray good = SampleProject::documentText(kGood);
        const QByteArray junk("nothing to see here\n");
        QTest::newRow("no archive") << QStringList() << QByteArrayList { good } << false;
        QTest::newRow("archive without entries") << QStringList() << QByteArrayList() << false;
        QTest::newRow("empty document.txt") << QStringList { "document.txt" } << QByteArrayList { "" } << false;
        QTest::newRow("document.txt not first")
            << QStringList { "a.txt", "document.txt" } << QByteArrayList { junk, good } << true;
        QTest::newRow("DOCUMENT.TXT") << QStringList { "a.txt", "DOCUMENT.TXT" } << QByteArrayList { junk, good }
                                      << true;
        QTest::newRow("first entry of another name")
            << QStringList { "header.dat", "b.txt" } << QByteArrayList { good, junk } << true;
        QTest::newRow("only the first entry counts")
            << QStringList { "a.txt", "b.txt" } << QByteArrayList { junk, good } << false;
    }

    void compressedArchive()
    {
        QFETCH(QStringList, names);
        QFETCH(QByteArrayList, contents);
        QFETCH(bool, accepted);

        const QString path = newPath(QStringLiteral("zmr"));
        QList<SampleProject::Entry> entries;
        for (int i = 0; i < names.size(); ++i)
            entries.append({ names.at(i), contents.at(i) });
        if (names.isEmpty() && !contents.isEmpty())
            QVERIFY(SampleProject::writeFile(path, contents.first()));
        else
            QVERIFY(SampleProject::writeArchive(path, entries));
        checkRead(path, accepted ? QStringLiteral("2.3.04") : QString());
    }

    void xmlHeader_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("version");

        const QString order = QStringLiteral("<header><%1>%2</%1><%3>%4</%3><m_lastEditorVersion>%5"
                                             "</m_lastEditorVersion></header>");
        QTest::newRow("A0 B4 C9 keeps its numbers") << xmlText(v(0, 4, 9, 3)) << "0.4.09";
        QTest::newRow("C of three digits") << xmlText(v(1, 2, 100, 0)) << "1.2.100";
        QTest::newRow("letters as version") << xmlText("abc") << "0.0.00";
        QTest::newRow("formatVer 1") << xmlText(kGood, "1") << "2.3.04";
        QTest::newRow("formatVer 0") << xmlText(kGood, "0") << "";
        QTest::newRow("formatVer abc sorts after 1") << xmlText(kGood, "abc") << "2.3.04";
        QTest::newRow("wrong signature") << xmlText(kGood, "1", "zmx") << "";
        QTest::newRow("elements in order") << xml(order.arg("signature", "zmr", "formatVer", "1", kGood)) << "2.3.04";
        QTest::newRow("formatVer before signature")
            << xml(order.arg("formatVer", "1", "signature", "zmr", kGood)) << "";
        QTest::newRow("signature before header")
            << xml("<p><signature>zmr</signature>" + order.arg("x", "", "formatVer", "1", kGood) + "</p>") << "";
        QTest::newRow("syntax error before the version")
            << xml(order.arg("signature", "zmr", "formatVer", "1</formatver><x>", kGood)) << "";
    }

    void xmlHeader()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, version);

        const QString path = newPath(QStringLiteral("xml"));
        QVERIFY(SampleProject::writeFile(path, text));
        checkRead(path, version);
    }

    void vanishedFile_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::newRow("zmr") << "zmr";
        QTest::newRow("xml") << "xml";
    }

    void vanishedFile()
    {
        QFETCH(QString, suffix);

        // Gone between the start of the process and the read.
        const QString path = newPath(suffix);
        QVERIFY(SampleProject::writeProject(path, QStringLiteral("2.3.4.5")));
        EditorDocManager manager(nullptr, path);
        QVERIFY(manager.createDocument());
        EditorInfo info;
        QVERIFY(manager.getEditorInfo(info, QDateTime()));
        QVERIFY(QFile::remove(path));
        QVERIFY(!manager.getEditorInfo(info, QDateTime()));
        QCOMPARE(info.getVersion(), QStringLiteral("0.1.00"));
    }

    void thumbnailComesFromTheCurrentDirectory()
    {
        QTemporaryDir current;
        const QString previous = QDir::currentPath();
        QVERIFY(QDir::setCurrent(current.path()));
        const QString path = newPath(QStringLiteral("zmr"));
        QVERIFY(SampleProject::writeProject(path, QStringLiteral("2.3.4.5")));
        EditorDocManager manager(nullptr, path);
        QVERIFY(manager.createDocument());

        QImage image(10, 10, QImage::Format_RGB32);
        const bool withoutPicture = manager.getThumbnail(image);
        QImage picture(32, 16, QImage::Format_RGB32);
        picture.fill(Qt::red);
        QVERIFY(picture.save(QStringLiteral("thumbnail.png")));
        const bool withPicture = manager.getThumbnail(image);
        QDir::setCurrent(previous);

        QVERIFY(!withoutPicture);
        QVERIFY(withPicture);
        QCOMPARE(image.size(), QSize(10, 5));
        QCOMPARE(QColor(image.pixel(0, 0)), QColor(Qt::red));
    }
};

QTEST_GUILESS_MAIN(TestReader)
#include "tst_reader.moc"
