#include "framework/framework.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"
#include "tests/support/stage.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <functional>

namespace
{

using Import = std::function<bool(Stage &)>;

/// A host that has the frames measured, and then mirrors the object itself, when it first hears of
/// a change.
class Turner : public QObject
{
public:
    explicit Turner(Stage &stage)
    {
        connect(Framework::instance().notifier(), &Notifier::propertyChanged, this, [this, &stage] {
            if (m_hasTurned)
                return;
            m_hasTurned = true;
            stage->updateRegion(false);
            stage.probe.isMirrored() = true;
        });
    }

    bool hasTurned() const { return m_hasTurned; }

private:
    bool m_hasTurned = false;
};

} // namespace

Q_DECLARE_METATYPE(Import)

/// Frames that arrive are measured as the object is turned in the end.
class TestRegionImports : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void framesAreMeasuredAsTheHostHasTurnedTheObject_data();
    void framesAreMeasuredAsTheHostHasTurnedTheObject();
};

void TestRegionImports::framesAreMeasuredAsTheHostHasTurnedTheObject_data()
{
    QTest::addColumn<Import>("import");
    const auto row = [](const char *name, const Import &import) { QTest::newRow(name) << import; };
    row("a picture", [](Stage &stage) {
        const QImage picture = Pictures::solid(8, 6, Qt::black);
        return stage->loadFromImage(&picture);
    });
    row("a GIF", [](Stage &stage) {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("film.gif"));
        GifBuilder(8, 6).add(0, 10).write(path);
        return stage->loadFromFile(path);
    });
    row("an open GIF", [](Stage &stage) {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("film.gif"));
        GifBuilder(8, 6).add(0, 10).write(path);
        QFile file(path);
        return file.open(QIODevice::ReadOnly) && stage->loadFromFile(path, &file);
    });
}

void TestRegionImports::framesAreMeasuredAsTheHostHasTurnedTheObject()
{
    QFETCH(Import, import);
    Stage stage;
    stage.document.setAlternateMode(1);
    const Turner turner(stage);
    QVERIFY(import(stage));
    QVERIFY(turner.hasTurned());
    // The last column does not count; mirrored, that is the first one.
    QCOMPARE(stage->shape().boundingRect(), QRectF(1, 0, 7, 6));
}

QTEST_MAIN(TestRegionImports)
#include "tst_region_imports.moc"
