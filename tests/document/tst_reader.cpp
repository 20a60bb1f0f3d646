#include "editordocmanager.h"
#include "editordocument.h"
#include "editorinfo.h"
#include "sampleproject.h"
#include "testfiles.h"

#include <QImage>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QString v(quint16 a, quint16 b, quint16 c, quint16 d)
{
    return SampleProject::packVersion(a, b, c, d);
}

const QString kGood = v(2, 3, 4, 5);
const int kBound = int(EditorDocument::kMaxEntryBytes);
const QString kMarker = QStringLiteral("22 serialization::archive 17");

QString header(const QString &version, const QString &signature = QStringLiteral("zmr"))
{
    return QStringLiteral("0 0 %1 12 %2").arg(signature, version);
}

// The bytes of a zip archive holding the entries in this order.
QByteArray zip(const QList<SampleProject::Entry> &entries, bool compressed = true)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("a.zip"));
    if (!SampleProject::writeArchive(path, entries, compressed))
        qFatal("cannot write a test archive");
    return TestFiles::read(path);
}

// An archive whose "document.txt" holds these lines.
QByteArray zmr(const QStringList &lines)
{
    return zip({ { QStringLiteral("document.txt"), lines.join(QLatin1Char('\n')).toUtf8() + '\n' } });
}

// An archive as the editor saves it.
QByteArray zmrText(const QString &version, const QString &formatVer = QStringLiteral("12"))
{
    return zip({ { QStringLiteral("document.txt"), SampleProject::documentText(version, formatVer) } });
}

QByteArray xml(const QString &version, const QString &formatVer = QStringLiteral("1"))
{
    return SampleProject::xmlText(version, formatVer);
}

// A picture of that size, encoded as PNG.
QByteArray png(int width, int height)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(Qt::darkCyan);
    return TestFiles::png(image);
}

} // namespace

// Reading the editor version out of both project forms, through the manager
// as the open-with flow does.
class TestReader : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    int m_fileCount = 0;

private slots:
    void read_data()
    {
        // The file's suffix (in any case) and bytes; an empty version means "refused".
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("version");

        const QByteArray good = SampleProject::documentText(kGood);
        const QString order = QStringLiteral("<header><%1>%2</%1><%3>%4</%3><m_lastEditorVersion>%5"
                                             "</m_lastEditorVersion></header>");
        // More entries than a plain zip directory counts.
        QList<SampleProject::Entry> many { { QStringLiteral("header.dat"), good } };
        for (int i = 1; i < 200000; ++i)
            many.append({ QStringLiteral("assets/%1.bin").arg(i), QByteArrayLiteral("0 serialization::archive") });
        // clang-format off
        QTest::newRow("no archive") << "zmr" << good << "";
        QTest::newRow("archive without entries") << "zmr" << zip({}) << "";
        QTest::newRow("empty entry") << "zmr" << zip({ { "document.txt", "" } }) << "";
        QTest::newRow("marker on line 6, header on 7") << "zmr" << zmr({ "a", "b", "c", "d", "e", kMarker, header(kGood) }) << "";
        QTest::newRow("wrong signature") << "zmr" << zmr({ kMarker, header(kGood, "zmx") }) << "";
        QTest::newRow("marker line of five words is no header") << "zmr" << zmr({ "22 serialization::archive zmr 12 " + v(1, 1, 1, 1), header(kGood) }) << "2.3.04";
        QTest::newRow("wrong-signature header ends the search") << "zmr" << zmr({ kMarker, header(kGood, "abc"), header(kGood) }) << "";
        QTest::newRow("formatVer 11") << "zmr" << zmrText(kGood, "11") << "";
        QTest::newRow("formatVer 12") << "ZMR" << zmrText(kGood, "12") << "2.3.04";
        QTest::newRow("version word 0") << "zmr" << zmrText("0") << "0.5.00";
        QTest::newRow("A0 B5 C1 D2") << "zmr" << zmrText(v(0, 5, 1, 2)) << "0.5.01";
        QTest::newRow("C of three digits") << "zmr" << zmrText(v(3, 1, 123, 4)) << "3.1.123";
        QTest::newRow("zmr letters") << "zmr" << zmrText("abc") << "0.5.00";
        QTest::newRow("first entry of another name") << "zmr" << zip({ { "header.dat", good }, { "b.txt", "x" } }) << "2.3.04";
        QTest::newRow("DOCUMENT.TXT not first") << "zmr" << zip({ { "a.txt", "x" }, { "DOCUMENT.TXT", good } }) << "2.3.04";
        QTest::newRow("many entries, none document.txt") << "zmr" << zip(many, false) << "2.3.04";
        // Read up to the bound, the words of a longer line still count.
        QTest::newRow("header line longer than the bound") << "zmr" << zmr({ kMarker, header(kGood) + ' ' + QString(kBound, 'x') }) << "2.3.04";
        QTest::newRow("formatVer 1") << "Xml" << xml(kGood, "1") << "2.3.04";
        QTest::newRow("formatVer 0") << "xml" << xml(kGood, "0") << "";
        QTest::newRow("formatVer abc sorts after 1") << "xml" << xml(kGood, "abc") << "2.3.04";
        QTest::newRow("A0 B4 C9 keeps its numbers") << "xml" << xml(v(0, 4, 9, 3)) << "0.4.09";
        QTest::newRow("xml letters") << "xml" << xml("abc") << "0.0.00";
        QTest::newRow("formatVer before signature") << "xml" << order.arg("formatVer", "1", "signature", "zmr", kGood).toUtf8() << "";
        // The XML reader sees no more of the file than the bound either.
        QTest::newRow("xml version word past the bound") << "xml" << xml(QString(kBound, '1')) << "";
        QTest::newRow("xml header past the bound") << "xml" << "<project><notes>" + QByteArray(kBound, 'x') + "</notes>" + xml(kGood).mid(xml(kGood).indexOf("<header>")) << "";
        QTest::newRow("syntax error") << "xml" << order.arg("signature", "zmr", "formatVer", "1</formatver><x>", kGood).toUtf8() << "";
        // clang-format on
    }

    void read()
    {
        QFETCH(QString, suffix);
        QFETCH(QByteArray, file);
        QFETCH(QString, version);

        const QString path = m_dir.filePath(QStringLiteral("p%1.%2").arg(++m_fileCount).arg(suffix));
        QVERIFY(TestFiles::write(path, file));
        EditorDocManager manager(nullptr, path);
        QVERIFY(manager.createDocument());
        EditorInfo info;
        QCOMPARE(manager.getEditorInfo(info, QDateTime()), !version.isEmpty());
        // A failed read still fills the record, with the defaults.
        QCOMPARE(info.getEdition() + ' ' + info.getVersion(),
            QStringLiteral("release ") + (version.isEmpty() ? QStringLiteral("0.1.00") : version));
    }

    void thumbnail_data()
    {
        // The project, the size of the image handed in, and the size of the
        // picture handed back ("" when there is none).
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QSize>("given");
        QTest::addColumn<QString>("result");
        const QByteArray text = SampleProject::documentText(kGood);
        QList<SampleProject::Entry> far;
        for (int i = 0; i < 16; ++i)
            far.append({ QStringLiteral("asset%1.bin").arg(i), "x" });
        far.append({ QStringLiteral("thumbnail.png"), png(40, 30) });
        // clang-format off
        QTest::newRow("zmr, scaled into the image") << "zmr" << zip({ { "document.txt", text }, { "Thumbnail.PNG", png(40, 30) } }) << QSize(20, 20) << "20x15";
        QTest::newRow("xml") << "xml" << SampleProject::xmlText(kGood, "1", "zmr", png(40, 30)) << QSize() << "40x30";
        QTest::newRow("none in xml") << "xml" << xml(kGood) << QSize() << "";
        QTest::newRow("past the first entries") << "zmr" << zip(far) << QSize() << "";
        QTest::newRow("too large to decode") << "zmr" << zip({ { "thumbnail.png", png(3000, 2) } }) << QSize() << "";
        QTest::newRow("damaged") << "zmr" << zip({ { "thumbnail.png", png(40, 30).left(60) } }) << QSize() << "";
        // clang-format on
    }

    // The picture that the editor saved with the project, within bounds.
    void thumbnail()
    {
        QFETCH(QString, suffix);
        QFETCH(QByteArray, file);
        QFETCH(QSize, given);
        QFETCH(QString, result);
        const QString path = m_dir.filePath(QStringLiteral("t%1.%2").arg(++m_fileCount).arg(suffix));
        QVERIFY(TestFiles::write(path, file));
        EditorDocManager manager(nullptr, path);
        QVERIFY(manager.createDocument());
        QImage image = given.isValid() ? QImage(given, QImage::Format_ARGB32) : QImage();
        const QImage before = image;
        QCOMPARE(manager.getThumbnail(image), !result.isEmpty());
        if (!result.isEmpty())
            QCOMPARE(QString("%1x%2").arg(image.width()).arg(image.height()), result);
        else
            QCOMPARE(image, before); // left as it was
    }

    void vanishedFile()
    {
        // Gone between an earlier read and this one.
        const QString path = m_dir.filePath(QStringLiteral("vanished.zmr"));
        QVERIFY(TestFiles::write(path, zmrText(kGood)));
        EditorDocManager manager(nullptr, path);
        QVERIFY(manager.createDocument());
        EditorInfo info;
        QVERIFY(manager.getEditorInfo(info, QDateTime()));
        QVERIFY(QFile::remove(path));
        QVERIFY(!manager.getEditorInfo(info, QDateTime()));
        QCOMPARE(info.getVersion(), QStringLiteral("0.1.00"));
    }
};

QTEST_GUILESS_MAIN(TestReader)
#include "tst_reader.moc"
