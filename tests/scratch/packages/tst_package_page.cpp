#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/flipbookrun.h"
#include "tests/scratch/packages/exporter/packagedocuments.h"
#include "tests/scratch/packages/exporter/packagefile.h"

#include <QtCore/QJsonObject>
#include <QtTest/QTest>

namespace
{

struct Placed {
    QPointF place;
    double size;
    double direction;
    QPointF rotationCenter;
};

Placed placedOf(const QJsonObject &sprite)
{
    const auto number = [](const QJsonObject &json, const char *key) {
        return json.value(QLatin1String(key)).toDouble();
    };
    const QJsonObject costume = sprite.value(QLatin1String("costumes")).toArray().at(0).toObject();
    return {{number(sprite, "x"), number(sprite, "y")},
            number(sprite, "size"),
            number(sprite, "direction"),
            {number(costume, "rotationCenterX"), number(costume, "rotationCenterY")}};
}

} // namespace

/// A page that flipbook writes for Scratch, against figures computed by hand.
class TestPackagePage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        const QString document = m_fixture.path(QStringLiteral("three.flipbook"));
        PackageDocuments::writeThreeObjects(m_fixture.plugin(), QDir(QStringLiteral(SAMPLES)), 30.0,
                                            document);
        const QString output = m_fixture.path(QStringLiteral("three.sb3"));
        const FlipbookRun run =
            flipbook({QStringLiteral("project"), document, QStringLiteral("-o"), output});
        QCOMPARE(run.status, 0);
        m_sprites = readPackage(output).sprites;
        QCOMPARE(m_sprites.size(), 3);
    }

    void theMirroredWalkStandsWhereItDoesOnThePage()
    {
        // Its middle is (180, 540) on the page, whose middle (480, 360) is the stage's.
        const Placed walk = placedOf(m_sprites.at(0).toObject());
        QCOMPARE(walk.place, QPointF(-150, -90));
        QCOMPARE(walk.size, 50.0);
        QCOMPARE(walk.direction, 90.0);
        QCOMPARE(walk.rotationCenter, QPointF(240, 240));
    }

    void theTurnedPinwheelKeepsItsFractions()
    {
        // Its middle is (684.5, 205), which is (102.25, 77.5) on the stage: a quarter right of and
        // half a unit below (102, 78). Four pixels are a unit; turned back by 30 degrees these
        // (1, 2) pixels are (cos 30 + 2 sin 30, 2 cos 30 - sin 30), by which the middle is off.
        const Placed pinwheel = placedOf(m_sprites.at(1).toObject());
        QCOMPARE(pinwheel.place, QPointF(102, 78));
        QCOMPARE(pinwheel.size, 50.0);
        QCOMPARE(pinwheel.direction, 120.0);
        QCOMPARE(pinwheel.rotationCenter.x(), 168 - 1.8660254037844387);
        QCOMPARE(pinwheel.rotationCenter.y(), 210 - 1.2320508075688772);
    }

    void theOwlStandsWhereItDoesOnThePage()
    {
        const Placed owl = placedOf(m_sprites.at(2).toObject());
        QCOMPARE(owl.place, QPointF(142, -133));
        QCOMPARE(owl.size, 50.0);
        QCOMPARE(owl.direction, 90.0);
        QCOMPARE(owl.rotationCenter, QPointF(128, 132));
    }

private:
    DocumentFixture m_fixture;
    QJsonArray m_sprites;
};

QTEST_MAIN(TestPackagePage)
#include "tst_package_page.moc"
