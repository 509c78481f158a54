#include "flipbook/editing/frameeditor.h"
#include "flipbook/object/objectprotocol.h"
#include "host/specialpropertyids.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"

#include <QtTest/QTest>

/// Edits of an object, when frames have different sizes: it keeps its scale and its centre.
class TestFrameEditor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void aNewFirstFrameIsShownInItsOwnSize();
    void aFrameThatIsNotShownLeavesTheSize();
    void aFrameMovedToThePlaceShownIsShownInItsOwnSize();
    void aResizedObjectKeepsItsScale();
    void aReplacedPictureKeepsTheSize();

private:
    void showNext() { ObjectProtocol::tell(*m_object, SpecialPropertyId::ShowNextFrame); }
    FrameEditor editor() { return FrameEditor(*m_object); }

    DocumentFixture m_fixture;
    OwnedObject m_object;
    QString m_big;
};

/// A film of two frames of 4 x 2, in the middle of which is (20, 20); a picture of 8 x 10 next to
/// it.
void TestFrameEditor::init()
{
    const QString film = m_fixture.path(QStringLiteral("film.gif"));
    GifBuilder(4, 2).add(0, 10).add(1, 10).write(film);
    m_big = m_fixture.path(QStringLiteral("big.png"));
    QVERIFY(Pictures::solid(8, 10, Qt::black).save(m_big));
    m_object = m_fixture.plugin().createObject();
    m_object->loadFromFile(film);
    m_object->setPos(QPointF(18, 19), false);
}

void TestFrameEditor::aNewFirstFrameIsShownInItsOwnSize()
{
    QVERIFY(editor().insertFile(1, m_big, QStringLiteral("big")));
    QCOMPARE(m_object->getSize(), QSizeF(8, 10));
    QCOMPARE(m_object->getPos(), QPointF(16, 15));
    showNext();
    QCOMPARE(m_object->getSize(), QSizeF(4, 2));
    QCOMPARE(m_object->getPos(), QPointF(18, 19));
}

void TestFrameEditor::aFrameThatIsNotShownLeavesTheSize()
{
    QVERIFY(editor().insertFile(2, m_big, QStringLiteral("big")));
    QCOMPARE(m_object->getSize(), QSizeF(4, 2));
    showNext();
    QCOMPARE(m_object->getSize(), QSizeF(8, 10));
}

void TestFrameEditor::aFrameMovedToThePlaceShownIsShownInItsOwnSize()
{
    QVERIFY(editor().insertFile(3, m_big, QStringLiteral("big")));
    editor().move(3, 1);
    QCOMPARE(m_object->getSize(), QSizeF(8, 10));
    editor().move(1, 2);
    QCOMPARE(m_object->getSize(), QSizeF(4, 2));
    editor().duplicate(2, 1);
    QCOMPARE(m_object->getSize(), QSizeF(8, 10));
    editor().insertBlank(1);
    QCOMPARE(m_object->getSize(), QSizeF(8, 10));
}

void TestFrameEditor::aResizedObjectKeepsItsScale()
{
    m_object->setSize(QSizeF(12, 4), false, false);
    QVERIFY(editor().insertFile(1, m_big, QStringLiteral("big")));
    // Three times as wide, twice as high.
    QCOMPARE(m_object->getSize(), QSizeF(24, 20));
    showNext();
    QCOMPARE(m_object->getSize(), QSizeF(12, 4));
}

void TestFrameEditor::aReplacedPictureKeepsTheSize()
{
    editor().replacePicture(1, Pictures::solid(8, 10, Qt::black));
    QCOMPARE(m_object->getSize(), QSizeF(4, 2));
}

QTEST_MAIN(TestFrameEditor)
#include "tst_frameeditor.moc"
