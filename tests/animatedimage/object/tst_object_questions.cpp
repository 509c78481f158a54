#include "framework/framework.h"
#include "host/baseobject.h"
#include "tests/support/pictures.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

#include <QtCore/QTemporaryDir>
#include <QtGui/QImageReader>
#include <QtTest/QTest>

namespace
{

/// What the object asks of its host. The functions below replace those of the libraries.
struct Asked {
    int items = 0;
    int directions = 0;
    int pictures = 0;
};

Asked asked;
double angle = 0.0;

} // namespace

/// A host whose objects are painted at an angle whatever their type is.
double CGDRootObject::getRotate() const
{
    return angle;
}

double CGDRootObject::getKTRotateDegree() const
{
    ++asked.directions;
    return 77.0;
}

QGraphicsItem *CBaseObject::GetGraphicsItemPtr() const
{
    ++asked.items;
    return const_cast<CBaseObject *>(this);
}

QDataStream &operator>>(QDataStream &stream, QImage &image)
{
    ++asked.pictures;
    qint32 isPresent = 0;
    stream >> isPresent;
    image = isPresent ? QImageReader(stream.device(), "png").read() : QImage();
    return stream;
}

namespace
{

/// Notes the angles that it is placed at.
class Placed : public CAnimatedImage
{
public:
    Placed()
        : CAnimatedImage(1, true, nullptr)
    {
        AnimatedImageProbe probe(*this);
        probe.frames().append({QStringLiteral("a"), Pictures::solid(4, 3, Qt::red)});
        probe.frames().append({QStringLiteral("b"), Pictures::solid(5, 6, Qt::green)});
    }

    void setCenterPos(const QPointF &center, const QSizeF &size, double degrees,
                      bool update) override
    {
        angles.append(degrees);
        CAnimatedImage::setCenterPos(center, size, degrees, update);
    }

    QList<double> angles;
};

UndoStack &stack()
{
    return *Framework::instance().undoStack();
}

} // namespace

/// What is asked of the host, whether or not the answer is used.
class TestObjectQuestions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanupTestCase();

    void onlyAnObjectThatTurnsFreelyKeepsItsAngle_data();
    void onlyAnObjectThatTurnsFreelyKeepsItsAngle();
    void anUndoableTypeAsksForTheItem();
    void replacingAllFramesReadsBothHalvesOfItsBuffer();
};

void TestObjectQuestions::init()
{
    Framework::instance().dropUndoCommands();
    angle = 0.0;
}

void TestObjectQuestions::cleanupTestCase()
{
    Framework::instance().dropUndoCommands();
}

void TestObjectQuestions::onlyAnObjectThatTurnsFreelyKeepsItsAngle_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<double>("expected");
    QTest::addColumn<int>("directions");
    QTest::newRow("upright") << 0 << 0.0 << 1;
    QTest::newRow("left or right") << 1 << 0.0 << 1;
    QTest::newRow("freely") << 2 << 30.0 << 0;
}

void TestObjectQuestions::onlyAnObjectThatTurnsFreelyKeepsItsAngle()
{
    QFETCH(int, type);
    QFETCH(double, expected);
    Placed image;
    image.setKTRotateType(type);
    angle = 30.0;
    asked = {};
    image.setCurrentIndex(1);
    QCOMPARE(image.angles, QList<double>{expected});
    QTEST(asked.directions, "directions");
}

void TestObjectQuestions::anUndoableTypeAsksForTheItem()
{
    Stage stage(solidFrames({{4, 3}}));
    // Neither 0 nor 1: no layer is changed, and nothing else needs the item.
    Request undoable(Request::packed(qint32(5), true));
    asked = {};
    QVERIFY(undoable.set(stage.image, 5008));
    QCOMPARE(asked.items, 1);

    Request plain(Request::packed(qint32(6), false));
    asked = {};
    QVERIFY(plain.set(stage.image, 5008));
    QCOMPARE(asked.items, 0);
}

void TestObjectQuestions::replacingAllFramesReadsBothHalvesOfItsBuffer()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("walk.png"));
    QVERIFY(Pictures::solid(4, 2, Qt::cyan).save(path));
    Stage stage(solidFrames({{4, 3}, {5, 6}}));
    Request request(Request::packed(path));
    asked = {};
    QVERIFY(request.get(stage.image, 5020));
    QCOMPARE(asked.pictures, 3);
    QCOMPARE(stage.frameNames(), QStringList{QStringLiteral("walk")});
    asked = {};
    stack().undo();
    QCOMPARE(asked.pictures, 3);
    QCOMPARE(stage.probe.frames().size(), 2);
    QCOMPARE(stage.probe.frame(1).image, Pictures::solid(5, 6, Qt::green));
}

QTEST_MAIN(TestObjectQuestions)
#include "tst_object_questions.moc"
