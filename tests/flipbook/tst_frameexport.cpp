#include "flipbook/base/failure.h"
#include "flipbook/base/outputfolder.h"
#include "flipbook/export/frameexport.h"
#include "framework/imagestore.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/filmfixture.h"

#include <QtCore/QDir>
#include <QtGui/QColorSpace>
#include <QtTest/QTest>

namespace
{

/// @p image as a document stores it.
QByteArray storedPng(const QImage &image)
{
    ImageStore store;
    return store.png(store.add(image));
}

/// Pictures in all formats, some with more than their pixels, and some of them twice.
QList<QImage> variedPictures()
{
    const QList<QImage> bases =
        FilmFixture::randomPictures({1, 3, {31, 18}, 300, true, true, true}) +
        FilmFixture::randomPictures({2, 3, {31, 18}, 9, true, true, false});
    QList<QImage> pictures = bases;
    for (int format = QImage::Format_Mono; format < QImage::NImageFormats; ++format) {
        for (const QImage &base : bases)
            pictures.append(base.convertToFormat(QImage::Format(format)));
    }
    for (int i = 0; i < 3; ++i)
        pictures.append(bases.at(i));
    pictures[pictures.size() - 1].setText(QStringLiteral("Title"), QStringLiteral("A walk"));
    pictures[pictures.size() - 2].setColorSpace(QColorSpace::DisplayP3);
    pictures[pictures.size() - 3].setOffset(QPoint(2, 3));
    return pictures + pictures.mid(4, 3);
}

} // namespace

class TestFrameExport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void filesReadLikeThoseInADocument();
    void theMemoryForFilesIsCounted();

private:
    QStringList exported(const QList<QImage> &pictures, const MemoryAccount &memory,
                         const QString &folder);

    DocumentFixture m_fixture;
    QVector<int> m_progress;
};

QStringList TestFrameExport::exported(const QList<QImage> &pictures, const MemoryAccount &memory,
                                      const QString &folder)
{
    const std::unique_ptr<Document> document = m_fixture.document({Qt::red});
    const OwnedObject object = FilmFixture::object(m_fixture.plugin(), pictures);
    OutputFolder output(folder);
    m_progress.clear();
    exportFrames(m_fixture.plugin(), *document, *object, memory, output,
                 [this](int done) { m_progress.append(done); });
    output.finish();
    return QDir(folder).entryList({QStringLiteral("*.png")});
}

void TestFrameExport::filesReadLikeThoseInADocument()
{
    const QList<QImage> pictures = variedPictures();
    const QString folder = m_fixture.path(QStringLiteral("frames"));
    const QStringList names = exported(pictures, MemoryAccount(), folder);
    QCOMPARE(names.size(), pictures.size());
    for (int i = 0; i < names.size(); ++i) {
        QImage found;
        QImage expected;
        QVERIFY(found.load(folder + QLatin1Char('/') + names.at(i), "PNG"));
        QVERIFY(expected.loadFromData(storedPng(pictures.at(i)), "PNG"));
        QCOMPARE(found.format(), expected.format());
        QCOMPARE(found, expected);
        QCOMPARE(found.text(), expected.text());
        QCOMPARE(found.dotsPerMeterX(), 3780);
        QCOMPARE(found.dotsPerMeterY(), 3780);
        QCOMPARE(found.offset(), QPoint());
        QVERIFY(!found.colorSpace().isValid());
        QCOMPARE(m_progress.at(i), i + 1);
    }
}

void TestFrameExport::theMemoryForFilesIsCounted()
{
    QImage large(600, 500, QImage::Format_ARGB32);
    large.fill(Qt::red);
    const QString folder = m_fixture.path(QStringLiteral("refused"));
    // A copy and a file of 1,200,000 bytes each.
    QVERIFY_EXCEPTION_THROWN(exported({large}, MemoryAccount(2399999), folder), OverBudget);
    QVERIFY(!QFileInfo::exists(folder));
    QCOMPARE(exported({large}, MemoryAccount(2400000), folder).size(), 1);
}

QTEST_MAIN(TestFrameExport)
#include "tst_frameexport.moc"
