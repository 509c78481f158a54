#include "flipbook/base/failure.h"
#include "flipbook/export/atlas.h"
#include "flipbook/export/atlaslayout.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/filmfixture.h"
#include "tests/support/pictures.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QRandomGenerator>
#include <QtTest/QTest>

class TestAtlas : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rectanglesDoNotOverlap();
    void equalSizesFillASquare();
    void whatIsTooLargeIsRefused();
    void everyFrameIsWhereTheDescriptionSays_data();
    void everyFrameIsWhereTheDescriptionSays();
    void theDescriptionHasTheCommonForm();
    void equalFramesShareTheirPlace();
    void memoryIsCounted();

private:
    DocumentFixture m_fixture;
};

namespace
{

QRect rectOf(const QJsonValue &value)
{
    const QJsonObject json = value.toObject();
    const auto number = [&json](const char *name) {
        return json.value(QLatin1String(name)).toInt(-1);
    };
    return {number("x"), number("y"), number("w"), number("h")};
}

QJsonArray framesOf(const QByteArray &json)
{
    return QJsonDocument::fromJson(json).object().value(QStringLiteral("frames")).toArray();
}

/// The pictures that a sheet and its description give.
QList<QImage> unpacked(const QImage &sheet, const QByteArray &json)
{
    QList<QImage> pictures;
    const QJsonArray frames = framesOf(json);
    for (const auto &value : frames) {
        const QJsonObject frame = value.toObject();
        const QRect source = rectOf(frame.value(QStringLiteral("spriteSourceSize")));
        const QJsonObject size = frame.value(QStringLiteral("sourceSize")).toObject();
        QImage picture = Pictures::transparent(size.value(QStringLiteral("w")).toInt(),
                                               size.value(QStringLiteral("h")).toInt());
        const QImage part = sheet.copy(rectOf(frame.value(QStringLiteral("frame"))));
        for (int y = 0; y < source.height(); ++y) {
            for (int x = 0; x < source.width(); ++x)
                picture.setPixel(source.left() + x, source.top() + y, part.pixel(x, y));
        }
        pictures.append(picture);
    }
    return pictures;
}

} // namespace

void TestAtlas::rectanglesDoNotOverlap()
{
    QRandomGenerator random(1);
    for (int round = 0; round < 40; ++round) {
        QVector<QSize> sizes;
        for (int i = random.bounded(60); i >= 0; --i)
            sizes.append(QSize(1 + random.bounded(50), 1 + random.bounded(50)));
        const std::optional<AtlasLayout> layout = layOutAtlas(sizes);
        QVERIFY(layout.has_value());
        const QRect sheet(QPoint(0, 0), layout->size);
        for (int i = 0; i < sizes.size(); ++i) {
            const QRect one(layout->places.at(i), sizes.at(i));
            QVERIFY(sheet.contains(one));
            for (int k = 0; k < i; ++k)
                QVERIFY(!one.intersects(QRect(layout->places.at(k), sizes.at(k))));
        }
    }
}

void TestAtlas::equalSizesFillASquare()
{
    const std::optional<AtlasLayout> layout = layOutAtlas(QVector<QSize>(9, QSize(10, 10)));
    QVERIFY(layout.has_value());
    QCOMPARE(layout->size, QSize(30, 30));
}

void TestAtlas::whatIsTooLargeIsRefused()
{
    QVERIFY(!layOutAtlas({QSize(16385, 1)}).has_value());
    QVERIFY(!layOutAtlas({QSize(1, 16385)}).has_value());
    QVERIFY(!layOutAtlas(QVector<QSize>(5, QSize(8192, 8192))).has_value());
    QVERIFY(layOutAtlas(QVector<QSize>(4, QSize(8192, 8192))).has_value());
}

void TestAtlas::everyFrameIsWhereTheDescriptionSays_data()
{
    QTest::addColumn<int>("trimming");
    QTest::newRow("whole") << int(Trimming::None);
    QTest::newRow("trimmed") << int(Trimming::Borders);
}

void TestAtlas::everyFrameIsWhereTheDescriptionSays()
{
    QFETCH(int, trimming);
    for (quint32 seed = 1; seed <= 20; ++seed) {
        const QList<QImage> pictures =
            FilmFixture::randomPictures({seed, 9, QSize(20, 14), 30, true, true, true});
        const OwnedObject object = FilmFixture::object(m_fixture.plugin(), pictures);
        const OutgoingFilm film = FilmFixture::film(m_fixture.plugin(), *object);
        const Atlas atlas =
            atlasOf(film, Trimming(trimming), MemoryAccount(), QStringLiteral("sheet.png"));
        const QList<QImage> result =
            unpacked(atlas.sheet, atlasJson(atlas, film, QStringLiteral("sheet.png")));
        QCOMPARE(result.size(), pictures.size());
        for (int i = 0; i < result.size(); ++i)
            QCOMPARE(result.at(i).convertToFormat(QImage::Format_ARGB32_Premultiplied),
                     pictures.at(i).convertToFormat(QImage::Format_ARGB32_Premultiplied));
    }
}

void TestAtlas::theDescriptionHasTheCommonForm()
{
    QImage picture = Pictures::transparent(6, 5);
    picture.setPixel(2, 1, 0xffff0000);
    picture.setPixel(3, 3, 0xff00ff00);
    const OwnedObject object = FilmFixture::object(m_fixture.plugin(), {picture});
    const OutgoingFilm film = FilmFixture::film(m_fixture.plugin(), *object, {70});
    const Atlas atlas =
        atlasOf(film, Trimming::Borders, MemoryAccount(), QStringLiteral("sheet.png"));
    QJsonObject json =
        QJsonDocument::fromJson(atlasJson(atlas, film, QStringLiteral("sheet.png"))).object();
    QJsonObject meta = json.take(QStringLiteral("meta")).toObject();
    QVERIFY(meta.take(QStringLiteral("app")).toString().startsWith(QStringLiteral("flipbook")));
    const QByteArray wantedMeta = R"({"image": "sheet.png", "format": "RGBA8888",
        "size": {"w": 2, "h": 3}, "scale": "1"})";
    QCOMPARE(meta, QJsonDocument::fromJson(wantedMeta).object());
    const QByteArray wanted = R"({"frames": [{"filename": "f1",
        "frame": {"x": 0, "y": 0, "w": 2, "h": 3}, "rotated": false, "trimmed": true,
        "spriteSourceSize": {"x": 2, "y": 1, "w": 2, "h": 3}, "sourceSize": {"w": 6, "h": 5},
        "duration": 70}]})";
    QCOMPARE(json, QJsonDocument::fromJson(wanted).object());
}

void TestAtlas::equalFramesShareTheirPlace()
{
    const QImage red = Pictures::solid(4, 4, Qt::red);
    const QImage blue = Pictures::solid(4, 4, Qt::blue);
    const OwnedObject object =
        FilmFixture::object(m_fixture.plugin(), {red, blue, red.copy(), blue});
    const OutgoingFilm film = FilmFixture::film(m_fixture.plugin(), *object);
    const Atlas atlas = atlasOf(film, Trimming::None, MemoryAccount(), QStringLiteral("s.png"));
    QCOMPARE(atlas.sheet.width() * atlas.sheet.height(), 32);
    QCOMPARE(atlas.frames.at(2).place, atlas.frames.at(0).place);
    QCOMPARE(atlas.frames.at(3).place, atlas.frames.at(1).place);
    QVERIFY(atlas.frames.at(0).place != atlas.frames.at(1).place);
}

void TestAtlas::memoryIsCounted()
{
    const OwnedObject object =
        FilmFixture::object(m_fixture.plugin(), {Pictures::solid(500, 500, Qt::red)});
    const OutgoingFilm film = FilmFixture::film(m_fixture.plugin(), *object);
    QVERIFY_EXCEPTION_THROWN(
        atlasOf(film, Trimming::None, MemoryAccount(3000000), QStringLiteral("s.png")), Failure);
    atlasOf(film, Trimming::None, MemoryAccount(9000000), QStringLiteral("s.png"));
}

QTEST_MAIN(TestAtlas)
#include "tst_atlas.moc"
