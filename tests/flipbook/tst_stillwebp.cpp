#include "flipbook/base/reading.h"
#include "flipbook/document/openedfile.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/filmbuilder.h"
#include "tests/flipbook/flipbookrun.h"

#include <QtCore/QDir>
#include <QtTest/QTest>

namespace
{

constexpr QRgb green = 0xff00ff00;

} // namespace

/// WebP files with one picture, which Qt reads only where a plug-in is installed.
class TestStillWebp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aStillWebpIsAPicture();

private:
    QString write(const QString &name, const QByteArray &bytes) const
    {
        writeBytes(m_fixture.path(name), bytes);
        return m_fixture.path(name);
    }

    DocumentFixture m_fixture;
};

void TestStillWebp::aStillWebpIsAPicture()
{
    const QString path =
        write(QStringLiteral("still.webp"), webpPicture(pixelRow({green, 0x40ff0000})));
    Reading reading(1 << 20, false);
    const OpenedFile opened = openFile(m_fixture.plugin(), path, reading);
    const Plugin::Frames frames = m_fixture.plugin().frames(*opened.objects().constFirst());
    QCOMPARE(frames.size(), 1);
    QCOMPARE(frames.first().first, QStringLiteral("still"));
    QCOMPARE(pixelsOf(frames.first().second), (QVector<QRgb>{green, 0x40ff0000}));
    QCOMPARE(opened.format, QStringLiteral("WebP"));

    // Objects read the pictures of a folder and those to be inserted themselves.
    const QString folder = m_fixture.path(QStringLiteral("folder"));
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(QFile::copy(path, folder + QStringLiteral("/a.webp")));
    writeBytes(folder + QStringLiteral("/config.json"),
               R"({"ImageList": [{"filename": "a.webp"}]})");
    const OpenedFile fromFolder = openFile(m_fixture.plugin(), folder, reading);
    QCOMPARE(fromFolder.warnings, QStringList());
    QCOMPARE(pixelsOf(m_fixture.plugin().frames(*fromFolder.objects().constFirst()).first().second),
             (QVector<QRgb>{green, 0x40ff0000}));
    const QString document = m_fixture.path(QStringLiteral("still.flipbook"));
    QCOMPARE(flipbook({QStringLiteral("new"), document, QStringLiteral("--add"), path}).status, 0);
    const FlipbookRun edit = flipbook({QStringLiteral("edit"), document, QStringLiteral("--insert"),
                                       QStringLiteral("2=") + path});
    QCOMPARE(edit.err.section(QLatin1Char('\n'), 1), QString());
    QCOMPARE(edit.status, 0);
}

QTEST_MAIN(TestStillWebp)
#include "tst_stillwebp.moc"
