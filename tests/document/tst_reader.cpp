#include "editordocmanager.h"
#include "editordocument.h"
#include "editorinfo.h"
#include "sampleproject.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QPointer>
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

QString header(const QString &version, const QString &formatVer = QStringLiteral("12"),
    const QString &signature = QStringLiteral("zmr"))
{
    return QStringLiteral("0 0 %1 %2 %3").arg(signature, formatVer, version);
}

QByteArray xml(const QString &body)
{
    return QByteArrayLiteral("<?xml version=\"1.0\"?>\n") + body.toUtf8();
}

QByteArray xmlProject(const QString &signature, const QString &formatVer, const QString &version)
{
    return xml(QStringLiteral("<project><header><signature>%1</signature><formatVer>%2</formatVer>"
                              "<m_lastEditorVersion>%3</m_lastEditorVersion></header></project>")
                   .arg(signature, formatVer, version));
}

} // namespace

// Reading the editor version out of both project forms, as the open-with
// flow and the recent-projects list do.
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

    // Reads through a manager the way the open-with flow does.
    static bool readProject(const QString &path, EditorInfo &info, QString *build = nullptr)
    {
        EditorDocManager manager(nullptr, path);
        if (!manager.createDocument())
            return false;
        const bool ok = manager.getEditorInfo(info, QDateTime());
        if (build)
            *build = manager.getDocument()->getBuildText();
        return ok;
    }

    void checkRead(const QString &path, bool accepted, const QString &version, const QString &build)
    {
        EditorInfo info;
        QString buildText;
        QCOMPARE(readProject(path, info, &buildText), accepted);
        // A failed read still fills the record, with the defaults.
        QCOMPARE(info.getApplType(), QStringLiteral("editor"));
        QCOMPARE(info.getEdition(), QStringLiteral("release"));
        QCOMPARE(info.getApplName(), QString());
        QCOMPARE(info.getVersion(), accepted ? version : QStringLiteral("0.1.00"));
        if (accepted)
            QCOMPARE(buildText, build);
    }

private slots:
    void initTestCase() { QVERIFY(m_dir.isValid()); }

    void documentKind_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("kind");

        QTest::newRow("zmr") << "a.zmr" << 0;
        QTest::newRow("ZMR") << "a.ZMR" << 0;
        QTest::newRow("xml") << "a.xml" << 1;
        QTest::newRow("Xml") << "a.Xml" << 1;
        QTest::newRow("no suffix") << "project" << 2;
        QTest::newRow("zip") << "project.zip" << 2;
        QTest::newRow("second suffix after zmr") << "project.zmr.bak" << 2;
        QTest::newRow("dots in the name") << "my.old.project.zmr" << 0;
        QTest::newRow("trailing dot") << "project.zmr." << 2;
        QTest::newRow("folder with a dot") << "folder.xml/project" << 2;
    }

    void documentKind()
    {
        QFETCH(QString, name);
        QFETCH(int, kind);

        QCOMPARE(EditorDocManager::documentKind(name), kind);
        EditorDocManager manager(nullptr, name);
        QCOMPARE(manager.getDocumentKind(), kind);
        QCOMPARE(manager.createDocument(), kind < 2);
        QCOMPARE(manager.getDocument() != nullptr, kind < 2);
        if (kind == 1)
            QCOMPARE(QString::fromLatin1(manager.getDocument()->metaObject()->className()),
                QStringLiteral("EditorDocumentXML"));
    }

    void compressedHeader_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<QString>("version");
        QTest::addColumn<QString>("build");

        const QString v2345 = v(2, 3, 4, 5);
        QTest::newRow("header at the top") << lines({ kMarker, header(v2345) }) << true << "2.3.04"
                                           << "5";
        QTest::newRow("CRLF line ends") << lines({ kMarker + '\r', header(v2345) + '\r' }) << true << "2.3.04"
                                        << "5";
        QTest::newRow("no newline at the end") << (kMarker + '\n' + header(v2345)).toUtf8() << true << "2.3.04"
                                               << "5";
        QTest::newRow("version word 0") << lines({ kMarker, header("0") }) << true << "0.5.00"
                                        << "0";
        QTest::newRow("A0 B5 C1 D2") << lines({ kMarker, header(v(0, 5, 1, 2)) }) << true << "0.5.01"
                                     << "2";
        QTest::newRow("below 0.5 counts as 0.5.00 build 0")
            << lines({ kMarker, header(v(0, 4, 9, 7)) }) << true << "0.5.00"
            << "0";
        QTest::newRow("A1 B0 is no old version") << lines({ kMarker, header(v(1, 0, 3, 0)) }) << true << "1.0.03"
                                                 << "0";
        QTest::newRow("C of three digits") << lines({ kMarker, header(v(3, 1, 123, 4)) }) << true << "3.1.123"
                                           << "4";
        QTest::newRow("all fields 65535, a negative word")
            << lines({ kMarker, header(v(65535, 65535, 65535, 65535)) }) << true << "65535.65535.65535"
            << "65535";
        QTest::newRow("letters as version") << lines({ kMarker, header("abc") }) << true << "0.5.00"
                                            << "0";
        QTest::newRow("word beyond 64 bits") << lines({ kMarker, header("99999999999999999999") }) << true << "0.5.00"
                                             << "0";
        QTest::newRow("empty version word") << lines({ kMarker, header("") }) << false << ""
                                            << "";
        QTest::newRow("formatVer 11") << lines({ kMarker, header(v2345, "11") }) << false << ""
                                      << "";
        QTest::newRow("formatVer 12") << lines({ kMarker, header(v2345, "12") }) << true << "2.3.04"
                                      << "5";
        QTest::newRow("formatVer 100") << lines({ kMarker, header(v2345, "100") }) << true << "2.3.04"
                                       << "5";
        QTest::newRow("formatVer letters") << lines({ kMarker, header(v2345, "abc") }) << false << ""
                                           << "";
        QTest::newRow("formatVer empty word") << lines({ kMarker, header(v2345, "") }) << false << ""
                                              << "";
        QTest::newRow("wrong signature") << lines({ kMarker, header(v2345, "12", "zmx") }) << false << ""
                                         << "";
        QTest::newRow("signature in capitals") << lines({ kMarker, header(v2345, "12", "ZMR") }) << false << ""
                                               << "";
        QTest::newRow("double blank gives an empty word")
            << lines({ kMarker, "0  zmr 12 " + v2345 }) << true << "2.3.04"
            << "5";
        QTest::newRow("tab is no separator") << lines({ kMarker, "0\t0 zmr 12 " + v2345 }) << false << ""
                                             << "";
        QTest::newRow("words after the fifth ignored")
            << lines({ kMarker, header(v2345) + " 7 8 9" }) << true << "2.3.04"
            << "5";
        QTest::newRow("lines before the marker")
            << lines({ "1 2 3 4 5 6", "junk", kMarker, header(v2345) }) << true << "2.3.04"
            << "5";
        QTest::newRow("marker on line 5, header on 6")
            << lines({ "a", "b", "c", "d", kMarker, header(v2345) }) << true << "2.3.04"
            << "5";
        QTest::newRow("marker on line 6, header on 7")
            << lines({ "a", "b", "c", "d", "e", kMarker, header(v2345) }) << false << ""
            << "";
        QTest::newRow("header on line 7")
            << lines({ kMarker, "1", "2", "3 3", "4 4 4", "5 5 5 5", header(v2345) }) << false << ""
            << "";
        QTest::newRow("blank lines count") << lines({ kMarker, "", "", "", "", header(v2345) }) << true << "2.3.04"
                                           << "5";
        QTest::newRow("ends after the marker") << lines({ kMarker }) << false << ""
                                               << "";
        QTest::newRow("no marker") << lines({ header(v2345), header(v2345) }) << false << ""
                                   << "";
        QTest::newRow("marker word first") << lines({ "serialization::archive 22 17", header(v2345) }) << false << ""
                                           << "";
        QTest::newRow("marker word must match exactly")
            << lines({ "22 serialization::archives 17", header(v2345) }) << false << ""
            << "";
        QTest::newRow("marker line of five words is no header")
            << lines({ "22 serialization::archive zmr 12 " + v(1, 1, 1, 1), header(v2345) }) << true << "2.3.04"
            << "5";
        QTest::newRow("marker line alone") << lines({ "22 serialization::archive zmr 12 " + v2345 }) << false << ""
                                           << "";
        QTest::newRow("lines under five words skipped")
            << lines({ kMarker, "0 0 zmr 12", header(v2345) }) << true << "2.3.04"
            << "5";
        QTest::newRow("wrong-signature header ends the search")
            << lines({ kMarker, header(v(1, 1, 1, 1), "12", "abc"), header(v2345) }) << false << ""
            << "";
        QTest::newRow("second marker is just a line") << lines({ kMarker, kMarker, header(v2345) }) << true << "2.3.04"
                                                      << "5";
        QTest::newRow("UTF-8 words") << lines({ kMarker, "\u00e9 \u00fc zmr 12 " + v2345 }) << true << "2.3.04"
                                     << "5";
    }

    void compressedHeader()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, accepted);
        QFETCH(QString, version);
        QFETCH(QString, build);

        const QString path = newPath(QStringLiteral("zmr"));
        QVERIFY(SampleProject::writeArchive(path, { { QStringLiteral("document.txt"), text } }));
        checkRead(path, accepted, version, build);
    }

    void compressedArchive_data()
    {
        // Either raw file contents or, when they are empty, an archive of the entries.
        QTest::addColumn<QByteArray>("raw");
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QByteArrayList>("contents");
        QTest::addColumn<bool>("accepted");

        const QByteArray good = SampleProject::documentText(v(2, 3, 4, 5));
        const QByteArray junk("nothing to see here\n");
        QByteArray archive;
        {
            const QString path = newPath(QStringLiteral("zmr"));
            SampleProject::writeArchive(path, { { QStringLiteral("document.txt"), good } });
            QFile file(path);
            file.open(QIODevice::ReadOnly);
            archive = file.readAll();
        }

        QTest::newRow("plain text, no archive") << good << QStringList() << QByteArrayList() << false;
        QTest::newRow("truncated archive") << archive.left(30) << QStringList() << QByteArrayList() << false;
        QTest::newRow("archive without entries") << QByteArray() << QStringList() << QByteArrayList() << false;
        QTest::newRow("empty document.txt")
            << QByteArray() << QStringList { "document.txt" } << QByteArrayList { "" } << false;
        QTest::newRow("document.txt not first")
            << QByteArray() << QStringList { "other.txt", "document.txt" } << QByteArrayList { junk, good } << true;
        QTest::newRow("DOCUMENT.TXT") << QByteArray() << QStringList { "DOCUMENT.TXT" } << QByteArrayList { good }
                                      << true;
        QTest::newRow("Document.Txt after another")
            << QByteArray() << QStringList { "a.txt", "Document.Txt" } << QByteArrayList { junk, good } << true;
        QTest::newRow("single entry of another name")
            << QByteArray() << QStringList { "header.dat" } << QByteArrayList { good } << true;
        QTest::newRow("without document.txt only the first entry counts")
            << QByteArray() << QStringList { "a.txt", "b.txt" } << QByteArrayList { junk, good } << false;
        QTest::newRow("document.txt in a folder is another name")
            << QByteArray() << QStringList { "notes.txt", "sub/document.txt" } << QByteArrayList { junk, good }
            << false;
        QTest::newRow("empty first entry")
            << QByteArray() << QStringList { "a.txt", "b.txt" } << QByteArrayList { "", good } << false;
    }

    void compressedArchive()
    {
        QFETCH(QByteArray, raw);
        QFETCH(QStringList, names);
        QFETCH(QByteArrayList, contents);
        QFETCH(bool, accepted);

        const QString path = newPath(QStringLiteral("zmr"));
        if (!raw.isEmpty()) {
            QVERIFY(SampleProject::writeFile(path, raw));
        } else {
            QList<SampleProject::Entry> entries;
            for (int i = 0; i < names.size(); ++i)
                entries.append({ names.at(i), contents.at(i) });
            QVERIFY(SampleProject::writeArchive(path, entries));
        }
        checkRead(path, accepted, QStringLiteral("2.3.04"), QStringLiteral("5"));
    }

    void xmlHeader_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<QString>("version");
        QTest::addColumn<QString>("build");

        const QString v2345 = v(2, 3, 4, 5);
        QTest::newRow("written by the sample writer") << SampleProject::xmlText(v2345) << true << "2.3.04"
                                                      << "5";
        QTest::newRow("below 0.5 keeps its numbers") << xmlProject("zmr", "1", v(0, 4, 9, 3)) << true << "0.4.09"
                                                     << "3";
        QTest::newRow("version word 0") << xmlProject("zmr", "1", "0") << true << "0.0.00"
                                        << "0";
        QTest::newRow("letters as version") << xmlProject("zmr", "1", "abc") << true << "0.0.00"
                                            << "0";
        QTest::newRow("C of three digits") << xmlProject("zmr", "1", v(1, 2, 100, 0)) << true << "1.2.100"
                                           << "0";
        QTest::newRow("formatVer 1") << xmlProject("zmr", "1", v2345) << true << "2.3.04"
                                     << "5";
        QTest::newRow("formatVer 0") << xmlProject("zmr", "0", v2345) << false << ""
                                     << "";
        QTest::newRow("formatVer abc sorts after 1") << xmlProject("zmr", "abc", v2345) << true << "2.3.04"
                                                     << "5";
        QTest::newRow("formatVer 05 sorts before 1") << xmlProject("zmr", "05", v2345) << false << ""
                                                     << "";
        QTest::newRow("formatVer 11") << xmlProject("zmr", "11", v2345) << true << "2.3.04"
                                      << "5";
        QTest::newRow("formatVer empty") << xmlProject("zmr", "", v2345) << false << ""
                                         << "";
        QTest::newRow("wrong signature") << xmlProject("zmx", "1", v2345) << false << ""
                                         << "";
        QTest::newRow("signature with blanks") << xmlProject(" zmr ", "1", v2345) << false << ""
                                               << "";
        QTest::newRow("empty version") << xmlProject("zmr", "1", "") << false << ""
                                       << "";
        QTest::newRow("elements at any depth, under any parent")
            << xml("<a><b><header/></b><c><d><signature>zmr</signature></d></c><formatVer>1</formatVer>"
                   "<e><m_lastEditorVersion>"
                   + v2345 + "</m_lastEditorVersion></e></a>")
            << true << "2.3.04"
            << "5";
        QTest::newRow("signature before header")
            << xml("<p><signature>zmr</signature><header><formatVer>1</formatVer><m_lastEditorVersion>" + v2345
                   + "</m_lastEditorVersion></header></p>")
            << false << ""
            << "";
        QTest::newRow("formatVer before signature")
            << xml("<header><formatVer>1</formatVer><signature>zmr</signature><m_lastEditorVersion>" + v2345
                   + "</m_lastEditorVersion></header>")
            << false << ""
            << "";
        QTest::newRow("version before formatVer") << xml("<header><signature>zmr</signature><m_lastEditorVersion>"
            + v2345 + "</m_lastEditorVersion><formatVer>1</formatVer></header>")
                                                  << false << ""
                                                  << "";
        QTest::newRow("no header") << xml("<p><signature>zmr</signature><formatVer>1</formatVer>"
                                          "<m_lastEditorVersion>1</m_lastEditorVersion></p>")
                                   << false << ""
                                   << "";
        QTest::newRow("no version") << xml("<header><signature>zmr</signature><formatVer>1</formatVer></header>")
                                    << false << ""
                                    << "";
        QTest::newRow("element with a child element")
            << xml("<header><signature><b>zmr</b></signature><formatVer>1</formatVer><m_lastEditorVersion>" + v2345
                   + "</m_lastEditorVersion></header>")
            << false << ""
            << "";
        QTest::newRow("version with text and a child element")
            << xml("<header><signature>zmr</signature><formatVer>1</formatVer><m_lastEditorVersion>" + v2345
                   + "<x/></m_lastEditorVersion></header>")
            << false << ""
            << "";
        QTest::newRow("syntax error before the version")
            << xml("<header><signature>zmr</signature><formatVer>1</formatver><m_lastEditorVersion>" + v2345
                   + "</m_lastEditorVersion></header>")
            << false << ""
            << "";
        QTest::newRow("syntax error after the version is never read")
            << xml("<header><signature>zmr</signature><formatVer>1</formatVer><m_lastEditorVersion>" + v2345
                   + "</m_lastEditorVersion></header><<<")
            << true << "2.3.04"
            << "5";
        QTest::newRow("entities in the text")
            << xml("<header><signature>&#122;mr</signature><formatVer>1</formatVer><m_lastEditorVersion>" + v2345
                   + "</m_lastEditorVersion></header>")
            << true << "2.3.04"
            << "5";
        QTest::newRow("not XML") << QByteArray("this is not xml") << false << ""
                                 << "";
        QTest::newRow("empty file") << QByteArray() << false << ""
                                    << "";
        QTest::newRow("zip archive with an xml suffix") << QByteArray("PK\x03\x04garbage") << false << ""
                                                        << "";
    }

    void xmlHeader()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, accepted);
        QFETCH(QString, version);
        QFETCH(QString, build);

        const QString path = newPath(QStringLiteral("xml"));
        QVERIFY(SampleProject::writeFile(path, text));
        checkRead(path, accepted, version, build);
    }

    void suffixDecidesTheForm()
    {
        // An XML project named .zmr is read as an archive, and the reverse.
        const QString xmlAsZmr = newPath(QStringLiteral("zmr"));
        QVERIFY(SampleProject::writeFile(xmlAsZmr, SampleProject::xmlText(v(2, 3, 4, 5))));
        EditorInfo info;
        QVERIFY(!readProject(xmlAsZmr, info));

        const QString zmrAsXml = newPath(QStringLiteral("XML"));
        QVERIFY(SampleProject::writeArchive(
            zmrAsXml, { { QStringLiteral("document.txt"), SampleProject::documentText(v(2, 3, 4, 5)) } }));
        QVERIFY(!readProject(zmrAsXml, info));

        const QString upper = newPath(QStringLiteral("ZMR"));
        QVERIFY(SampleProject::writeProject(upper, QStringLiteral("4.0.2.1")));
        QVERIFY(readProject(upper, info));
        QCOMPARE(info.getVersion(), QStringLiteral("4.0.02"));
    }

    void unsupportedKindLeavesRecordAlone()
    {
        const QString path = m_dir.filePath(QStringLiteral("project.txt"));
        QVERIFY(SampleProject::writeFile(path, SampleProject::documentText(v(2, 3, 4, 5))));
        EditorDocManager manager(nullptr, path);
        QVERIFY(!manager.createDocument());
        EditorInfo info(QStringLiteral("editor"), QStringLiteral("inhouse"), QStringLiteral("9.9.9.9"));
        QImage image;
        QVERIFY(!manager.getEditorInfo(info, QDateTime()));
        QVERIFY(!manager.getThumbnail(image));
        QCOMPARE(info.getEdition(), QStringLiteral("inhouse"));
        QCOMPARE(info.getVersion(), QStringLiteral("9.9.9.9"));
    }

    void fileGoneOrUnopenable_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::newRow("zmr") << "zmr";
        QTest::newRow("xml") << "xml";
    }

    void fileGoneOrUnopenable()
    {
        QFETCH(QString, suffix);

        // Vanished between the start of the process and the read.
        const QString path = newPath(suffix);
        QVERIFY(SampleProject::writeProject(path, QStringLiteral("2.3.4.5")));
        EditorDocManager manager(nullptr, path);
        QVERIFY(manager.createDocument());
        EditorInfo info;
        QVERIFY(manager.getEditorInfo(info, QDateTime()));
        QVERIFY(QFile::remove(path));
        QVERIFY(!manager.getEditorInfo(info, QDateTime()));
        QCOMPARE(info.getVersion(), QStringLiteral("0.1.00"));
        // What the last good read left stays, but is not handed out.
        QCOMPARE(manager.getDocument()->getVersionText(), QStringLiteral("2.3.04"));

        // Exists but does not open as a file.
        const QString folder = newPath(suffix);
        QVERIFY(QDir().mkdir(folder));
        QVERIFY(!readProject(folder, info));
    }

    void everyReadRereadsTheFile()
    {
        const QString path = newPath(QStringLiteral("zmr"));
        QVERIFY(SampleProject::writeProject(path, QStringLiteral("2.3.4.5")));
        EditorDocManager manager(nullptr, path);
        QVERIFY(manager.createDocument());
        QPointer<EditorDocument> first = manager.getDocument();
        EditorInfo info;
        QVERIFY(manager.getEditorInfo(info, QDateTime()));
        QCOMPARE(info.getVersion(), QStringLiteral("2.3.04"));
        QCOMPARE(manager.getDocument()->getLastModified(), QFileInfo(path).lastModified());

        QVERIFY(SampleProject::writeProject(path, QStringLiteral("3.0.0.1")));
        QVERIFY(manager.getEditorInfo(info, QDateTime()));
        QCOMPARE(info.getVersion(), QStringLiteral("3.0.00"));
        QCOMPARE(manager.getDocument()->getBuildText(), QStringLiteral("1"));

        // A second createDocument replaces the document object.
        QVERIFY(manager.createDocument());
        QVERIFY(first.isNull());
        QCOMPARE(manager.getDocument()->getVersionText(), QString());
    }

    void fieldsOfAHeaderlessRead()
    {
        const QString path = newPath(QStringLiteral("zmr"));
        QVERIFY(SampleProject::writeArchive(path, { { QStringLiteral("document.txt"), lines({ kMarker }) } }));
        EditorDocManager manager(nullptr, path);
        QVERIFY(manager.createDocument());
        EditorInfo info;
        QVERIFY(!manager.getEditorInfo(info, QDateTime()));
        QCOMPARE(manager.getDocument()->getSignature(), QString());
        QVERIFY(!manager.getDocument()->getLastModified().isValid());
    }

    void thumbnail_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<bool>("pictureInCurrentDir");
        QTest::addColumn<QSize>("requested");
        QTest::addColumn<QSize>("result");

        QTest::newRow("none in the current directory") << "zmr" << false << QSize(10, 10) << QSize(10, 10);
        QTest::newRow("null image takes the picture") << "zmr" << true << QSize(0, 0) << QSize(32, 16);
        QTest::newRow("sized image keeps the aspect") << "zmr" << true << QSize(100, 100) << QSize(100, 50);
        QTest::newRow("xml project alike") << "xml" << true << QSize(16, 16) << QSize(16, 8);
        QTest::newRow("xml project, none in the current directory") << "xml" << false << QSize(0, 0) << QSize(0, 0);
    }

    void thumbnail()
    {
        QFETCH(QString, suffix);
        QFETCH(bool, pictureInCurrentDir);
        QFETCH(QSize, requested);
        QFETCH(QSize, result);

        // A picture in the archive and one beside the project play no part:
        // only the current directory is looked at.
        QImage own(8, 8, QImage::Format_RGB32);
        own.fill(Qt::blue);
        QByteArray png;
        QBuffer buffer(&png);
        QVERIFY(buffer.open(QIODevice::WriteOnly));
        QVERIFY(own.save(&buffer, "PNG"));
        QTemporaryDir projectDir;
        const QString path = projectDir.filePath(QStringLiteral("project.") + suffix);
        if (suffix == QLatin1String("zmr")) {
            QVERIFY(SampleProject::writeArchive(path,
                { { QStringLiteral("document.txt"), SampleProject::documentText(v(2, 3, 4, 5)) },
                    { QStringLiteral("thumbnail.png"), png } }));
        } else {
            QVERIFY(SampleProject::writeProject(path, QStringLiteral("2.3.4.5")));
        }
        QVERIFY(SampleProject::writeFile(projectDir.filePath(QStringLiteral("thumbnail.png")), png));

        QTemporaryDir current;
        const QString previous = QDir::currentPath();
        QVERIFY(QDir::setCurrent(current.path()));
        if (pictureInCurrentDir) {
            QImage picture(32, 16, QImage::Format_RGB32);
            picture.fill(Qt::red);
            QVERIFY(picture.save(QStringLiteral("thumbnail.png")));
        }

        EditorDocManager manager(nullptr, path);
        QVERIFY(manager.createDocument());
        QImage image;
        if (!requested.isEmpty()) {
            image = QImage(requested, QImage::Format_RGB32);
            image.fill(Qt::green);
        }
        const QImage before = image;
        const bool ok = manager.getThumbnail(image);
        QDir::setCurrent(previous);

        QCOMPARE(ok, pictureInCurrentDir);
        QCOMPARE(image.size(), result);
        if (ok) {
            QCOMPARE(QColor(image.pixel(0, 0)), QColor(Qt::red));
            if (requested.isEmpty())
                QCOMPARE(image.format(), QImage::Format_ARGB32);
        } else {
            QCOMPARE(image, before);
        }
    }
};

QTEST_GUILESS_MAIN(TestReader)
#include "tst_reader.moc"
