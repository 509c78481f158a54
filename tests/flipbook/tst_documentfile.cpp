#include "flipbook/base/failure.h"
#include "flipbook/base/reading.h"
#include "flipbook/document/documentarchive.h"
#include "flipbook/document/documentfile.h"
#include "flipbook/document/documentjson.h"
#include "tests/flipbook/bombs.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/quiet.h"

#include <QtCore/QLoggingCategory>
#include <QtTest/QTest>

#include <sys/stat.h>

namespace
{

constexpr qint64 budget = qint64(64) << 20;

/// The text of a document whose only object, on its only page, has this state.
QByteArray textWith(const QByteArray &state)
{
    return R"({"format": "flipbook document", "version": 1, "pages": [{"rect": [0, 0, 200, 100],
        "objects": [{"kind": "animated image", "layer": "normal", "state": )" +
           state + "}]}]}";
}

} // namespace

class TestDocumentFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aSavedDocumentComesBack();
    void equalDocumentsGiveEqualFiles();
    void eachPictureIsKeptOnce();
    void layersComeBack();
    void aFileCutAtAnyByteIsNeverHalfLoaded();
    void aFileWithAnyByteChangedIsNeverHalfLoaded();
    void foreignTextsAreRefused_data();
    void foreignTextsAreRefused();
    void otherFilesAreRefused();
    void aMissingPictureIsNamed();
    void aDamagedPictureIsNamed();
    void picturesBeyondTheBudgetAreRefused();
    void picturesInTheTextCountToo();
    void aReferredGifIsRead();
    void aReferenceToAPipeIsNotFollowed();
    void aReferenceThatLeavesTheFolderIsRefused_data();
    void aReferenceThatLeavesTheFolderIsRefused();
    void aReferenceByTheFullPathOfTheFolderIsRead();

private:
    QString save(const QByteArray &text, const QMap<QString, QByteArray> &pictures = {}) const;
    LoadedDocument load(const QString &path) const;
    QString failureOf(const QString &path) const;

    std::unique_ptr<DocumentFixture> m_fixture;
};

void TestDocumentFile::initTestCase()
{
    // What the archive library thinks of damaged archives.
    QLoggingCategory::setFilterRules(QStringLiteral("kf.archive=false"));
    m_fixture = std::make_unique<DocumentFixture>();
}

QString TestDocumentFile::save(const QByteArray &text,
                               const QMap<QString, QByteArray> &pictures) const
{
    const QString path = m_fixture->path(QStringLiteral("made.flipbook"));
    DocumentArchive::write(path, text, pictures);
    return path;
}

LoadedDocument TestDocumentFile::load(const QString &path) const
{
    Reading reading(budget, false);
    return loadDocument(m_fixture->plugin(), path, reading);
}

// The reason why the document cannot be loaded; empty when it can.
QString TestDocumentFile::failureOf(const QString &path) const
{
    try {
        load(path);
    } catch (const Failure &failure) {
        return failure.reason;
    }
    return QString();
}

void TestDocumentFile::aSavedDocumentComesBack()
{
    const auto document = m_fixture->document({Qt::red, Qt::green});
    const QString path = m_fixture->path(QStringLiteral("a.flipbook"));
    saveDocument(*document, path);
    const LoadedDocument loaded = load(path);
    QCOMPARE(loaded.warnings, QStringList());
    QCOMPARE(loaded.document->pages().size(), 1);
    const Page &page = *loaded.document->pages().first();
    QCOMPARE(page.pageRect(), QRectF(0, 0, 200, 100));
    QCOMPARE(page.objects().size(), 1);
    CBaseObject &object = *page.objects().constFirst();
    QCOMPARE(object.objectId(), 7);
    QCOMPARE(object.getPos(), QPointF(10, 20));
    QCOMPARE(object.getSize(), QSizeF(4, 3));
    const Plugin::Frames frames = m_fixture->plugin().frames(object);
    QCOMPARE(frames.size(), 2);
    QCOMPARE(frames.at(0).first, QStringLiteral("film_1"));
    QCOMPARE(frames.at(0).second.pixelColor(3, 2), QColor(Qt::red));
    QCOMPARE(frames.at(1).first, QStringLiteral("film_2"));
    QCOMPARE(frames.at(1).second.pixelColor(0, 0), QColor(Qt::green));
    QCOMPARE(AnimatedObject(object).intervalMs(), 100);
    QCOMPARE(AnimatedObject(object).name(), QStringLiteral("film"));
}

void TestDocumentFile::equalDocumentsGiveEqualFiles()
{
    const QString first = m_fixture->path(QStringLiteral("first.flipbook"));
    const QString second = m_fixture->path(QStringLiteral("second.flipbook"));
    saveDocument(*m_fixture->document({Qt::red, Qt::blue}), first);
    saveDocument(*load(first).document, second);
    QVERIFY(!bytesOf(first).isEmpty());
    QCOMPARE(bytesOf(second), bytesOf(first));
}

void TestDocumentFile::eachPictureIsKeptOnce()
{
    const QString path = m_fixture->path(QStringLiteral("once.flipbook"));
    const auto document = m_fixture->document({Qt::red, Qt::green, Qt::red});
    saveDocument(*document, path);
    QCOMPARE(document->imageStore().digests().size(), 2);
    // Named once before its bytes and once in the archive's directory.
    const auto digests = document->imageStore().digests();
    for (const QString &digest : digests)
        QCOMPARE(bytesOf(path).count("pictures/" + digest.toLatin1()), 2);
}

void TestDocumentFile::layersComeBack()
{
    const QString path = m_fixture->path(QStringLiteral("layers.flipbook"));
    const auto document = m_fixture->document({Qt::red});
    Page *page = document->pages().first();
    page->addObject(m_fixture->plugin().createObject(8).release(), Page::Layer::Background);
    saveDocument(*document, path);
    const LoadedDocument loaded = load(path);
    const Page &read = *loaded.document->pages().first();
    QCOMPARE(read.objects().size(), 2);
    QCOMPARE(read.objects().constFirst()->objectId(), 8);
    QVERIFY(read.placeOf(read.objects().constFirst()).layer == Page::Layer::Background);
    QVERIFY(read.placeOf(read.objects().constLast()).layer == Page::Layer::Normal);
}

void TestDocumentFile::aFileCutAtAnyByteIsNeverHalfLoaded()
{
    const QString path = m_fixture->path(QStringLiteral("cut.flipbook"));
    const auto document = m_fixture->document({Qt::red});
    saveDocument(*document, path);
    const QByteArray whole = bytesOf(path);
    const QByteArray text = documentJson(*document);
    // The directory of the archive is at its end: only the last bytes, which say how long a
    // comment follows, can be done without.
    for (int length = 0; length < whole.size(); ++length) {
        writeBytes(path, whole.left(length));
        if (length < whole.size() - 22) {
            QVERIFY2(!failureOf(path).isEmpty(), qPrintable(QString::number(length)));
        } else if (failureOf(path).isEmpty()) {
            QCOMPARE(load(path).warnings, QStringList());
            QCOMPARE(documentJson(*load(path).document), text);
        }
    }
}

void TestDocumentFile::aFileWithAnyByteChangedIsNeverHalfLoaded()
{
    const QString path = m_fixture->path(QStringLiteral("flipped.flipbook"));
    const auto document = m_fixture->document({Qt::red});
    saveDocument(*document, path);
    const QByteArray whole = bytesOf(path);
    const QByteArray text = documentJson(*document);
    int refused = 0;
    for (int i = 0; i < whole.size(); ++i) {
        QByteArray changed = whole;
        changed[i] = char(~changed.at(i));
        writeBytes(path, changed);
        try {
            const LoadedDocument loaded = load(path);
            // Either a picture is missing, and said to be, or nothing that matters was hit.
            if (loaded.warnings.isEmpty())
                QCOMPARE(documentJson(*loaded.document), text);
        } catch (const Failure &) {
            ++refused;
        }
    }
    QVERIFY(refused > 100);
}

void TestDocumentFile::foreignTextsAreRefused_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *name, const QByteArray &text, const char *reason) {
        QTest::newRow(name) << text << QStringLiteral("its document.json ") + QLatin1String(reason);
    };
    row("no JSON", "pages, pages", "is not JSON: illegal value at byte 1");
    row("an array", "[]", "is not that of a flipbook document");
    row("another format", R"({"format": "sheet"})", "is not that of a flipbook document");
    row("no version", R"({"format": "flipbook document"})", "has no version");
    row("a later version", R"({"format": "flipbook document", "version": 2})",
        "was written by a later flipbook (version 2; this one reads 1)");
    row("no pages", R"({"format": "flipbook document", "version": 1})", "has no \"pages\"");
    row("a page without a place",
        R"({"format": "flipbook document", "version": 1, "pages": [{"objects": []}]})",
        "gives page 1 no usable \"rect\"");
    row("an endless page", R"({"format": "flipbook document", "version": 1,
        "pages": [{"rect": [0, 0, 1e300, 1], "objects": []}]})",
        "gives page 1 no usable \"rect\"");
    row("a page without objects", R"({"format": "flipbook document", "version": 1,
        "pages": [{"rect": [0, 0, 9, 9]}]})",
        "gives page 1 no \"objects\"");
    row("an object of another kind", R"({"format": "flipbook document", "version": 1,
        "pages": [{"rect": [0, 0, 9, 9], "objects": [{"kind": "text"}]}]})",
        "has an object of an unknown kind, 'text', on page 1");
    row("an object without a state", textWith("3"), "has an object without \"state\" on page 1");
    row("nesting without end", QByteArray(5000, '['),
        "is not JSON: too deeply nested document "
        "at byte 1025");
}

void TestDocumentFile::foreignTextsAreRefused()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, reason);
    QCOMPARE(failureOf(save(text)), reason);
}

void TestDocumentFile::otherFilesAreRefused()
{
    const QString path = m_fixture->path(QStringLiteral("other.flipbook"));
    QCOMPARE(failureOf(path), QStringLiteral("not found"));
    writeBytes(path, "a few words");
    QCOMPARE(failureOf(path), QStringLiteral("not a flipbook document: it is not a zip archive"));
    // An archive without a single file.
    writeBytes(path, QByteArray("PK\5\6", 4) + QByteArray(18, '\0'));
    QCOMPARE(failureOf(path), QStringLiteral("not a flipbook document: it has no document.json"));
}

void TestDocumentFile::aMissingPictureIsNamed()
{
    const QByteArray digest(32, 'a');
    const LoadedDocument loaded =
        load(save(textWith(R"({"ImageList": [{"digest": ")" + digest + R"("}, null]})")));
    QCOMPARE(loaded.warnings,
             QStringList(QStringLiteral("frame 1 of object 1 of page 1 is empty: its picture '%1' "
                                        "is missing")
                             .arg(QString::fromLatin1(digest))));
    const Plugin::Frames frames =
        m_fixture->plugin().frames(*loaded.document->pages().first()->objects().first());
    QCOMPARE(frames.size(), 2);
    QVERIFY(frames.first().second.isNull());
}

void TestDocumentFile::aDamagedPictureIsNamed()
{
    const auto document = m_fixture->document({Qt::red});
    const QString path = m_fixture->path(QStringLiteral("damaged.flipbook"));
    saveDocument(*document, path);
    const QString digest = document->imageStore().digests().first();
    QByteArray png = document->imageStore().png(digest);
    png.chop(3);
    const LoadedDocument loaded = load(save(documentJson(*document), {{digest, png}}));
    QCOMPARE(loaded.warnings,
             QStringList(QStringLiteral("frame 1 of object 1 of page 1 is empty: its picture '%1' "
                                        "is damaged")
                             .arg(digest)));
}

void TestDocumentFile::picturesBeyondTheBudgetAreRefused()
{
    // The head of a PNG file that promises 30,000 x 30,000 pixels, in place of a small one.
    const QByteArray head = QByteArray::fromHex("89504e470d0a1a0a0000000d49484452"
                                                "0000753000007530"
                                                "080600000000000000");
    const QString digest(32, QLatin1Char('b'));
    const QString path =
        save(textWith(R"({"ImageList": [{"digest": ")" + digest.toLatin1() + R"("}]})"),
             {{digest, head}});
    QCOMPARE(failureOf(path),
             QStringLiteral("its pictures would need more memory than the 64.0 MiB that "
                            "--max-memory allows, 3.4 GiB for one alone"));

    // Pictures of 240,000 bytes: one for the first and third frame, one for the second, two for the
    // decoder. The document itself takes less than 100,000.
    const QByteArray one = Bombs::png({300, 200});
    const QByteArray other = Bombs::png({200, 300});
    const QString small = m_fixture->path(QStringLiteral("small.flipbook"));
    Bombs::writeDocument(small, {Bombs::stateWith({one, other, one})}, {one, other});
    constexpr qint64 needed = qint64(4) * 240000;
    Reading tooLittle(needed, false);
    QVERIFY_EXCEPTION_THROWN(loadDocument(m_fixture->plugin(), small, tooLittle), OverBudget);
    Reading enough(needed + 100000, false);
    QCOMPARE(loadDocument(m_fixture->plugin(), small, enough).warnings, QStringList());
}

void TestDocumentFile::picturesInTheTextCountToo()
{
    const QByteArray vast =
        QByteArray("\x89PNG\r\n\x1a\n") +
        Bombs::pngChunk("IHDR", QByteArray::fromHex("00007530000075300806000000")) +
        Bombs::pngChunk("IDAT", {}) + Bombs::pngChunk("IEND", {});
    const auto saved = [this, &vast](const QByteArray &prefix) {
        return save(textWith(R"({"ImageList": [{"png": ")" + prefix + vast.toBase64() + R"("}]})"));
    };
    QVERIFY(failureOf(saved("")).startsWith(QStringLiteral("its pictures would need more memory")));
    // What is not base64 is not skipped: nothing after it counts.
    QCOMPARE(load(saved(QByteArray(80, '!'))).warnings,
             QStringList(QStringLiteral("frame 1 of object 1 of page 1 is empty: its picture is "
                                        "damaged")));
}

void TestDocumentFile::aReferredGifIsRead()
{
    GifBuilder(4, 4).add(0, 10).add(1, 10).write(m_fixture->path(QStringLiteral("by.gif")));
    const LoadedDocument loaded =
        load(save(textWith(R"({"IsGif": true, "GifFileName": "by.gif"})")));
    QCOMPARE(loaded.warnings, QStringList());
    QCOMPARE(
        m_fixture->plugin().frames(*loaded.document->pages().first()->objects().first()).size(), 2);
}

void TestDocumentFile::aReferenceToAPipeIsNotFollowed()
{
    const Quiet quiet; // Qt warns of the empty path that the object gets instead
    QCOMPARE(::mkfifo(qPrintable(m_fixture->path(QStringLiteral("pipe.gif"))), 0600), 0);
    const LoadedDocument loaded =
        load(save(textWith(R"({"IsGif": true, "GifFileName": "pipe.gif"})")));
    QCOMPARE(loaded.warnings,
             QStringList(QStringLiteral("object 1 of page 1 has no frames: the GIF that it refers "
                                        "to, 'pipe.gif': is a pipe, not a file")));
}

void TestDocumentFile::aReferenceThatLeavesTheFolderIsRefused_data()
{
    QTest::addColumn<QString>("reference"); // %1 stands for the folder above the document's
    QTest::newRow("by its full path") << QStringLiteral("%1/film.gif");
    QTest::newRow("by dots") << QStringLiteral("../film.gif");
    QTest::newRow("by a link") << QStringLiteral("link.gif");
}

void TestDocumentFile::aReferenceThatLeavesTheFolderIsRefused()
{
    QFETCH(QString, reference);
    const QTemporaryDir above;
    GifBuilder(4, 4).add(0, 10).write(above.filePath(QStringLiteral("film.gif")));
    QVERIFY(QDir(above.path()).mkdir(QStringLiteral("in")));
    QVERIFY(QFile::link(above.filePath(QStringLiteral("film.gif")),
                        above.filePath(QStringLiteral("in/link.gif"))));
    if (reference.contains(QLatin1Char('%')))
        reference = reference.arg(above.path());
    const QString path = above.filePath(QStringLiteral("in/made.flipbook"));
    DocumentArchive::write(
        path, textWith(R"({"IsGif": true, "GifFileName": ")" + reference.toUtf8() + R"("})"), {});
    QCOMPARE(failureOf(path), QStringLiteral("object 1 of page 1 refers to '%1', which leads out "
                                             "of the folder; --allow-outside reads it")
                                  .arg(reference));
    Reading anywhere(budget, true);
    const LoadedDocument loaded = loadDocument(m_fixture->plugin(), path, anywhere);
    QCOMPARE(loaded.warnings, QStringList());
    CBaseObject &object = *loaded.document->pages().first()->objects().constFirst();
    QCOMPARE(m_fixture->plugin().frames(object).size(), 1);
}

void TestDocumentFile::aReferenceByTheFullPathOfTheFolderIsRead()
{
    const QString film = m_fixture->path(QStringLiteral("full.gif"));
    GifBuilder(4, 4).add(0, 10).write(film);
    const LoadedDocument loaded =
        load(save(textWith(R"({"IsGif": true, "GifFileName": ")" + film.toUtf8() + R"("})")));
    QCOMPARE(loaded.warnings, QStringList());
}

QTEST_MAIN(TestDocumentFile)
#include "tst_documentfile.moc"
