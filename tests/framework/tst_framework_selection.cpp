#include "framework/page.h"
#include "tests/framework/paintedobject.h"

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

namespace
{

/// An object of 20 x 10 that is hit everywhere or nowhere.
class Shaped : public PaintedObject
{
public:
    explicit Shaped(bool isOpaque)
        : m_isOpaque(isOpaque)
    {
        setSize(QSizeF(20, 10), false, false);
    }

    QPainterPath shape() const override
    {
        QPainterPath path;
        if (m_isOpaque)
            path.addRect(getClientRect());
        return path;
    }

private:
    bool m_isOpaque;
};

Shaped *add(Page &page, bool isOpaque, const QPointF &pos)
{
    auto *object = new Shaped(isOpaque);
    page.addObject(object);
    object->setPos(pos, false);
    return object;
}

} // namespace

/// Which objects of a page are selected, and which one is at a point.
class TestFrameworkSelection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void selectedObjectsAreListedFromTheLowest();
    void aSelectionIsOneChange();
    void theHighestObjectIsFound();
    void whatIsOpaqueIsPreferred();
    void theHighestTransparentObjectIsFoundOtherwise();
    void onlyEditableObjectsAreFound();
};

void TestFrameworkSelection::selectedObjectsAreListedFromTheLowest()
{
    Page page(QRectF(0, 0, 200, 100));
    Shaped *low = add(page, true, QPointF(0, 0));
    add(page, true, QPointF(30, 0));
    Shaped *high = add(page, true, QPointF(60, 0));
    QCOMPARE(page.selectedObjects(), QList<CBaseObject *>());
    high->setSelected(true);
    QCOMPARE(page.selectedObjects(), QList<CBaseObject *>{high});
    low->setSelected(true);
    QCOMPARE(page.selectedObjects(), (QList<CBaseObject *>{low, high}));
}

void TestFrameworkSelection::aSelectionIsOneChange()
{
    Page page(QRectF(0, 0, 200, 100));
    Shaped *first = add(page, true, QPointF(0, 0));
    Shaped *second = add(page, true, QPointF(30, 0));
    Shaped *third = add(page, true, QPointF(60, 0));
    first->setSelected(true);
    const QSignalSpy changes(&page, &QGraphicsScene::selectionChanged);
    page.selectObjects({second, third});
    QCOMPARE(page.selectedObjects(), (QList<CBaseObject *>{second, third}));
    QCOMPARE(changes.count(), 1);
    page.selectObjects({});
    QCOMPARE(page.selectedObjects(), QList<CBaseObject *>());
    QCOMPARE(changes.count(), 2);
}

void TestFrameworkSelection::theHighestObjectIsFound()
{
    Page page(QRectF(0, 0, 200, 100));
    Shaped *low = add(page, true, QPointF(0, 0));
    Shaped *high = add(page, true, QPointF(10, 0));
    QCOMPARE(page.objectAt(QPointF(5, 5)), low);
    QCOMPARE(page.objectAt(QPointF(15, 5)), high);
    QCOMPARE(page.objectAt(QPointF(50, 5)), nullptr);
}

void TestFrameworkSelection::whatIsOpaqueIsPreferred()
{
    Page page(QRectF(0, 0, 200, 100));
    Shaped *opaque = add(page, true, QPointF(0, 0));
    add(page, false, QPointF(0, 0));
    QCOMPARE(page.objectAt(QPointF(5, 5)), opaque);
}

void TestFrameworkSelection::theHighestTransparentObjectIsFoundOtherwise()
{
    Page page(QRectF(0, 0, 200, 100));
    Shaped *low = add(page, false, QPointF(0, 0));
    Shaped *high = add(page, false, QPointF(10, 0));
    QCOMPARE(page.objectAt(QPointF(5, 5)), low);
    QCOMPARE(page.objectAt(QPointF(15, 5)), high);
}

void TestFrameworkSelection::onlyEditableObjectsAreFound()
{
    Page page(QRectF(0, 0, 200, 100));
    auto *fixed = new CBaseObject(1, false, nullptr, nullptr);
    page.addObject(fixed);
    fixed->setSize(QSizeF(20, 10), false, false);
    QCOMPARE(page.objectAt(QPointF(5, 5)), nullptr);
}

QTEST_MAIN(TestFrameworkSelection)
#include "tst_framework_selection.moc"
