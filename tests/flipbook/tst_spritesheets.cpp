#include "flipbook/base/failure.h"
#include "flipbook/base/memoryaccount.h"
#include "flipbook/base/sheetcut.h"
#include "flipbook/import/spritesheet.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/filmbuilder.h"
#include "tests/flipbook/flipbookrun.h"
#include "tests/flipbook/objectstate.h"
#include "tests/support/gifbuilder.h"

#include <QtCore/QDir>
#include <QtTest/QTest>

Q_DECLARE_METATYPE(SheetCut)

namespace
{

constexpr QRgb red = 0xffff0000;
constexpr QRgb green = 0xff00ff00;
constexpr QRgb blue = 0xff0000ff;

SheetCut grid(int columns, int rows, int margin = 0, int spacing = 0)
{
    return {QSize(columns, rows), QSize(), margin, spacing};
}

SheetCut cells(int width, int height, int margin = 0, int spacing = 0)
{
    return {QSize(), QSize(width, height), margin, spacing};
}

} // namespace

/// Pictures that hold all frames of a film, cut by a grid or as a JSON file says.
class TestSpriteSheets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cellsLieWhereTheyShould_data();
    void cellsLieWhereTheyShould();
    void aSheetThatCannotBeCutIsRefused_data();
    void aSheetThatCannotBeCutIsRefused();
    void emptyCellsAtTheEndAreLeftOut();
    void pixelsInNoCellAreTold();
    void optionsCutPictures();
    void wrongOptionsAreTold_data();
    void wrongOptionsAreTold();
    void onlyPicturesAreCut();
    void aSheetIsAddedToAPage();
    void aDescriptionIsRead_data();
    void aDescriptionIsRead();
    void trimmedAndTurnedFramesAreWholeAgain();
    void durationsAreKept();
    void aDamagedDescriptionIsRefused_data();
    void aDamagedDescriptionIsRefused();
    void thePictureIsLookedUpInTheFolderOnly();
    void aDescriptionThatNeedsTooMuchIsRefused();

private:
    /// Writes the sheet "sheet.png", red, green and blue in a row, and its description.
    QString write(const QByteArray &json) const;
    QStringList framesOf(const QString &file, const QStringList &options = {}) const;

    DocumentFixture m_fixture;
};

QString TestSpriteSheets::write(const QByteArray &json) const
{
    pixelRow({red, green, blue}).save(m_fixture.path(QStringLiteral("sheet.png")));
    QString path = m_fixture.path(QStringLiteral("sheet.json"));
    writeBytes(path, json);
    return path;
}

/// As a document has them.
QStringList TestSpriteSheets::framesOf(const QString &file, const QStringList &options) const
{
    const QString document = m_fixture.path(QStringLiteral("doc.flipbook"));
    const FlipbookRun run =
        flipbook(QStringList{QStringLiteral("new"), document, QStringLiteral("--force"),
                             QStringLiteral("--add"), file} +
                 options);
    if (run.status != 0)
        return {run.err};
    return objectIn(m_fixture.plugin(), document, 1).frames;
}

void TestSpriteSheets::cellsLieWhereTheyShould_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<SheetCut>("cut");
    QTest::addColumn<QVector<QRect>>("rects");
    using Rects = QVector<QRect>;
    QTest::newRow("two columns, two rows")
        << QSize(8, 6) << grid(2, 2)
        << Rects{{0, 0, 4, 3}, {4, 0, 4, 3}, {0, 3, 4, 3}, {4, 3, 4, 3}};
    // 1 + 3 + 2 + 3 + 1 pixels across, 1 + 4 + 1 down.
    QTest::newRow("margin and spacing")
        << QSize(10, 6) << grid(2, 1, 1, 2) << Rects{{1, 1, 3, 4}, {6, 1, 3, 4}};
    QTest::newRow("cells") << QSize(8, 3) << cells(4, 3) << Rects{{0, 0, 4, 3}, {4, 0, 4, 3}};
    QTest::newRow("cells with margin and spacing")
        << QSize(10, 6) << cells(3, 4, 1, 2) << Rects{{1, 1, 3, 4}, {6, 1, 3, 4}};
    QTest::newRow("cells without a margin at the end")
        << QSize(9, 5) << cells(3, 4, 1, 2) << Rects{{1, 1, 3, 4}, {6, 1, 3, 4}};
    QTest::newRow("cells that leave a rest") << QSize(7, 4) << cells(4, 3) << Rects{{0, 0, 4, 3}};
    QTest::newRow("one cell") << QSize(5, 5) << grid(1, 1) << Rects{{0, 0, 5, 5}};
}

void TestSpriteSheets::cellsLieWhereTheyShould()
{
    QFETCH(QSize, size);
    QFETCH(SheetCut, cut);
    QTEST(cellsOf(size, cut, QStringLiteral("sheet.png")), "rects");
}

void TestSpriteSheets::aSheetThatCannotBeCutIsRefused_data()
{
    QTest::addColumn<SheetCut>("cut");
    QTest::addColumn<QString>("reason");
    QTest::newRow("columns") << grid(3, 1)
                             << QStringLiteral("its 8 x 6 pixels cannot be divided into 3 x 1 "
                                               "equal cells");
    QTest::newRow("more cells than pixels")
        << grid(16, 1)
        << QStringLiteral("its 8 x 6 pixels cannot be divided into 16 x 1 equal cells");
    QTest::newRow("a margin beyond the sheet")
        << grid(1, 1, 4)
        << QStringLiteral("its 8 x 6 pixels cannot be divided into 1 x 1 equal cells");
    QTest::newRow("a large cell") << cells(9, 2)
                                  << QStringLiteral(
                                         "its 8 x 6 pixels are too few for a cell of 9 x 2");
    QTest::newRow("the largest numbers")
        << cells(1 << 20, 1 << 20, 1 << 20, 1 << 20)
        << QStringLiteral("its 8 x 6 pixels are too few for a cell of 1048576 x 1048576");
}

void TestSpriteSheets::aSheetThatCannotBeCutIsRefused()
{
    QFETCH(SheetCut, cut);
    QString reason;
    try {
        cellsOf(QSize(8, 6), cut, QStringLiteral("sheet.png"));
    } catch (const Failure &failure) {
        reason = failure.reason;
    }
    QTEST(reason, "reason");
}

void TestSpriteSheets::emptyCellsAtTheEndAreLeftOut()
{
    MemoryAccount memory(1 << 20);
    const QString path = QStringLiteral("sheet.png");
    const DecodedFilm film = cutSheet(pixelRow({red, 0, green, 0, 0}), grid(5, 1), path, memory);
    QCOMPARE(film.pictures.size(), 3);
    QCOMPARE(pixelsOf(film.pictures.at(1)), QVector<QRgb>{0});
    QCOMPARE(pixelsOf(film.pictures.at(2)), QVector<QRgb>{green});
    QVERIFY_EXCEPTION_THROWN(cutSheet(pixelRow({0, 0}), grid(2, 1), path, memory), Failure);
    MemoryAccount little(2000);
    QVERIFY_EXCEPTION_THROWN(cutSheet(pixelRow({red, red}), grid(2, 1), path, little), OverBudget);
}

void TestSpriteSheets::pixelsInNoCellAreTold()
{
    MemoryAccount memory(1 << 20);
    const DecodedFilm film =
        cutSheet(pixelRow({red, green, blue}), cells(2, 1), QStringLiteral("sheet.png"), memory);
    QCOMPARE(film.warnings, QStringList{QStringLiteral("1 pixels at the right are in no cell")});
}

void TestSpriteSheets::optionsCutPictures()
{
    const QString sheet = m_fixture.path(QStringLiteral("cut.png"));
    QVERIFY(pixelRow({red, green, blue, 0}).save(sheet));
    const QStringList expected = {QStringLiteral("cut_1 #ff0000 1x1"),
                                  QStringLiteral("cut_2 #00ff00 1x1"),
                                  QStringLiteral("cut_3 #0000ff 1x1")};
    QCOMPARE(framesOf(sheet, {QStringLiteral("--grid"), QStringLiteral("4x1")}), expected);
    QCOMPARE(framesOf(sheet, {QStringLiteral("--cell"), QStringLiteral("1x1")}), expected);
    QCOMPARE(
        framesOf(sheet,
                 {QStringLiteral("--cell"), QStringLiteral("1x1"), QStringLiteral("--spacing"),
                  QStringLiteral("1"), QStringLiteral("--margin"), QStringLiteral("0")}),
        (QStringList{QStringLiteral("cut_1 #ff0000 1x1"), QStringLiteral("cut_2 #0000ff 1x1")}));
    const FlipbookRun info =
        flipbook({QStringLiteral("info"), sheet, QStringLiteral("--grid"), QStringLiteral("2x1")});
    QVERIFY2(info.out.contains(QStringLiteral("  format    sprite sheet\n"
                                              "  frames    2, named cut_1 to cut_2\n")),
             qPrintable(info.out));
}

void TestSpriteSheets::wrongOptionsAreTold_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QString>("reason");
    QTest::newRow("both") << QStringLiteral("--grid 2x1 --cell 1x1")
                          << QStringLiteral("--grid and --cell exclude each other");
    QTest::newRow("neither") << QStringLiteral("--margin 2")
                             << QStringLiteral("--margin and --spacing need --grid or --cell");
    QTest::newRow("one number") << QStringLiteral("--grid 4")
                                << QStringLiteral("--grid takes two whole numbers such as 4x3, "
                                                  "not '4'");
    QTest::newRow("nothing") << QStringLiteral("--cell 0x3")
                             << QStringLiteral("--cell takes two whole numbers such as 4x3, not "
                                               "'0x3'");
    QTest::newRow("too much") << QStringLiteral("--cell 9999999x3")
                              << QStringLiteral("--cell takes two whole numbers such as 4x3, not "
                                                "'9999999x3'");
    QTest::newRow("a word") << QStringLiteral("--grid 2x1 --spacing x")
                            << QStringLiteral("--spacing takes a whole number from 0 to 1048576, "
                                              "not 'x'");
}

void TestSpriteSheets::wrongOptionsAreTold()
{
    QFETCH(QString, options);
    QFETCH(QString, reason);
    const FlipbookRun run = flipbook(QStringList{QStringLiteral("info"), QStringLiteral("a.png")} +
                                     options.split(QLatin1Char(' ')));
    QCOMPARE(run.status, 2);
    QCOMPARE(run.err.section(QLatin1Char('\n'), 0, 0), QStringLiteral("flipbook: ") + reason);
}

void TestSpriteSheets::onlyPicturesAreCut()
{
    const QString gif = m_fixture.path(QStringLiteral("film.gif"));
    GifBuilder(4, 3).add(0, 10).write(gif);
    const FlipbookRun run =
        flipbook({QStringLiteral("info"), gif, QStringLiteral("--grid"), QStringLiteral("2x1")});
    QCOMPARE(run.status, 1);
    QCOMPARE(run.err, QStringLiteral("flipbook: %1: only a still picture can be cut into frames, "
                                     "not a GIF\n")
                          .arg(gif));
}

void TestSpriteSheets::aSheetIsAddedToAPage()
{
    const auto run = [this](const QString &arguments) {
        return flipbookIn(m_fixture.path(QString()), arguments.split(QLatin1Char(' ')));
    };
    QVERIFY(pixelRow({red, green}).save(m_fixture.path(QStringLiteral("two.png"))));
    QCOMPARE(run(QStringLiteral("new page.flipbook")).status, 0);
    const QString edit = QStringLiteral("edit page.flipbook --add two.png ");
    QCOMPARE(run(edit + QStringLiteral("--grid 2x1 --name cut")).err, QString());
    QCOMPARE(
        objectIn(m_fixture.plugin(), m_fixture.path(QStringLiteral("page.flipbook")), 1).frames,
        (QStringList{QStringLiteral("two_1 #ff0000 1x1"), QStringLiteral("two_2 #00ff00 1x1")}));
    QVERIFY(
        run(edit + QStringLiteral("--cell 5x1"))
            .err.startsWith(QLatin1String("flipbook: page.flipbook: --add two.png: two.png: ")));
    const FlipbookRun nothing = run(QStringLiteral("edit page.flipbook --mirror --grid 2x1"));
    QCOMPARE(nothing.status, 2);
    QVERIFY(nothing.err.startsWith(QLatin1String("flipbook: --grid and --cell cut the pictures")));
    const FlipbookRun document = run(QStringLiteral("info page.flipbook --grid 2x1"));
    QCOMPARE(document.status, 1);
    QVERIFY2(document.err.endsWith(QLatin1String("not a document\n")), qPrintable(document.err));
}

void TestSpriteSheets::aDescriptionIsRead_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QStringList>("frames");
    QTest::newRow("an array") << QByteArray(R"({"frames": [
        {"filename": "sun.png", "frame": {"x": 2, "y": 0, "w": 1, "h": 1}},
        {"filename": "moon.v2", "frame": {"x": 0, "y": 0, "w": 2, "h": 1}}],
        "meta": {"image": "sheet.png"}})")
                              << QStringList{QStringLiteral("sun #0000ff 1x1"),
                                             QStringLiteral("moon.v2 mixed 2x1")};
    QTest::newRow("an object, whose names have an order")
        << QByteArray(R"({"frames": {
        "walk 10.png": {"frame": {"x": 2, "y": 0, "w": 1, "h": 1}},
        "walk 9.png": {"frame": {"x": 0, "y": 0, "w": 1, "h": 1}}},
        "meta": {"image": "sheet.png"}})")
        << QStringList{QStringLiteral("walk 9 #ff0000 1x1"), QStringLiteral("walk 10 #0000ff 1x1")};
    QTest::newRow("no names") << QByteArray(R"({"frames": [
        {"frame": {"x": 1, "y": 0, "w": 1, "h": 1}}], "meta": {"image": "sheet.png"}})")
                              << QStringList{QStringLiteral("sheet_1 #00ff00 1x1")};
}

void TestSpriteSheets::aDescriptionIsRead()
{
    QFETCH(QByteArray, json);
    QTEST(framesOf(write(json)), "frames");
}

void TestSpriteSheets::trimmedAndTurnedFramesAreWholeAgain()
{
    // Turned clockwise on the sheet, 1 x 3 pixels lie as 3 x 1: the first one is at the right.
    const QString path = write(R"({"frames": [
        {"frame": {"x": 1, "y": 0, "w": 1, "h": 1}, "trimmed": true,
         "spriteSourceSize": {"x": 1, "y": 0, "w": 1, "h": 1}, "sourceSize": {"w": 3, "h": 1}},
        {"frame": {"x": 0, "y": 0, "w": 1, "h": 3}, "rotated": true}],
        "meta": {"image": "sheet.png"}})");
    const QString folder = m_fixture.path(QStringLiteral("frames"));
    QCOMPARE(flipbook({QStringLiteral("frames"), path, QStringLiteral("-o"), folder}).err,
             QString());
    const QStringList files = QDir(folder).entryList({QStringLiteral("*.png")}, QDir::Files);
    QCOMPARE(files.size(), 2);
    QCOMPARE(pixelsOf(QImage(folder + QLatin1Char('/') + files.at(0))),
             (QVector<QRgb>{0, green, 0}));
    const QImage turned(folder + QLatin1Char('/') + files.at(1));
    QCOMPARE(turned.size(), QSize(1, 3));
    QCOMPARE(pixelsOf(turned), (QVector<QRgb>{blue, green, red}));
}

void TestSpriteSheets::durationsAreKept()
{
    const QString path = write(R"({"frames": [
        {"frame": {"x": 0, "y": 0, "w": 1, "h": 1}, "duration": 5},
        {"frame": {"x": 1, "y": 0, "w": 1, "h": 1}, "duration": 20}],
        "meta": {"image": "sheet.png"}})");
    const FlipbookRun run = flipbook({QStringLiteral("info"), QStringLiteral("--json"), path});
    QCOMPARE(run.json().value(QStringLiteral("shortestDelayMs")).toInt(), 5);
    QCOMPARE(run.json().value(QStringLiteral("longestDelayMs")).toInt(), 20);
    QCOMPARE(framesOf(path, {QStringLiteral("--keep-timing")}).size(), 5);
}

void TestSpriteSheets::aDamagedDescriptionIsRefused_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("reason");
    const auto with = [](const char *frame) {
        return QByteArray(R"({"frames": [)") + frame + R"(], "meta": {"image": "sheet.png"}})";
    };
    QTest::newRow("not JSON") << QByteArray("{\"frames\": [") << QStringLiteral("not JSON: ");
    QTest::newRow("something else")
        << QByteArray(R"({"a": 1})")
        << QStringLiteral("not the description of a sprite sheet: it has no \"frames\"");
    QTest::newRow("no rectangle") << with("{}")
                                  << QStringLiteral("\"frame\" of frame 1 is not a rectangle of "
                                                    "whole pixels");
    QTest::newRow("a fraction") << with(R"({"frame": {"x": 0.5, "y": 0, "w": 1, "h": 1}})")
                                << QStringLiteral("\"frame\" of frame 1 is not a rectangle of "
                                                  "whole pixels");
    QTest::newRow("outside") << with(R"({"frame": {"x": 2, "y": 0, "w": 2, "h": 1}})")
                             << QStringLiteral("frame 1 is outside of the picture, which has 3 x 1 "
                                               "pixels");
    QTest::newRow("larger than whole")
        << with(R"({"frame": {"x": 0, "y": 0, "w": 2, "h": 1}, "sourceSize": {"w": 1, "h": 1}})")
        << QStringLiteral("frame 1 is larger than its \"sourceSize\"");
    QTest::newRow("no picture")
        << QByteArray(R"({"frames": [{"frame": {"x": 0, "y": 0, "w": 1, "h": 1}}]})")
        << QStringLiteral("it names no picture: \"image\" in \"meta\" is missing");
    QTest::newRow("a missing picture")
        << QByteArray(R"({"frames": [{"frame": {"x": 0, "y": 0, "w": 1, "h": 1}}],
                          "meta": {"image": "none.png"}})")
        << QStringLiteral("none.png: not found");
}

void TestSpriteSheets::aDamagedDescriptionIsRefused()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, reason);
    const QString path = write(json);
    const FlipbookRun run = flipbook({QStringLiteral("info"), path});
    QCOMPARE(run.status, 1);
    QVERIFY2(run.err.startsWith(QStringLiteral("flipbook: %1: %2").arg(path, reason)),
             qPrintable(run.err));
}

void TestSpriteSheets::thePictureIsLookedUpInTheFolderOnly()
{
    const QString outside = m_fixture.path(QStringLiteral("outside.png"));
    QVERIFY(pixelRow({red}).save(outside));
    const QString folder = m_fixture.path(QStringLiteral("inner"));
    QVERIFY(QDir().mkpath(folder));
    const QString path = folder + QStringLiteral("/sheet.json");
    writeBytes(path, R"({"frames": [{"frame": {"x": 0, "y": 0, "w": 1, "h": 1}}],
                         "meta": {"image": "../outside.png"}})");
    const FlipbookRun run = flipbook({QStringLiteral("info"), path});
    QCOMPARE(run.status, 1);
    QCOMPARE(run.err, QStringLiteral("flipbook: %1: ../outside.png: leads out of the folder; "
                                     "--allow-outside reads it\n")
                          .arg(path));
    QCOMPARE(flipbook({QStringLiteral("info"), path, QStringLiteral("--allow-outside")}).status, 0);
}

void TestSpriteSheets::aDescriptionThatNeedsTooMuchIsRefused()
{
    const QString path = write(R"({"frames": [
        {"frame": {"x": 0, "y": 0, "w": 1, "h": 1}, "sourceSize": {"w": 1000000, "h": 1000000}}],
        "meta": {"image": "sheet.png"}})");
    const FlipbookRun run = flipbook({QStringLiteral("info"), path});
    QCOMPARE(run.status, 1);
    QVERIFY2(run.err.startsWith(QStringLiteral("flipbook: %1: 1 frame would need ").arg(path)),
             qPrintable(run.err));
}

QTEST_MAIN(TestSpriteSheets)
#include "tst_spritesheets.moc"
