#pragma once

#include "host/baseobject.h"

#include <QtCore/QPointF>
#include <QtTest/QTest>

#include <cmath>
#include <limits>

/// A base object whose parameters can be seen.
struct Saved : CBaseObject {
    explicit Saved(int id = 0, bool editable = true)
        : CBaseObject(id, editable, nullptr, nullptr)
    {
    }

    QMap<QString, QVariant> params() const { return m_otherParams; }
};

/// A value of every type that is kept.
inline QMap<QString, QVariant> everyType()
{
    return {
        {QStringLiteral("a bool"), true},
        {QStringLiteral("b int"), -3},
        {QStringLiteral("c uint"), 4000000000U},
        {QStringLiteral("d longlong"), qlonglong(-9007199254740993)},
        {QStringLiteral("e double"), 0.1},
        {QStringLiteral("f text"), QStringLiteral("caf\u00e9 \"x\"")},
        {QStringLiteral("g texts"), QStringList{QStringLiteral("one"), QString()}},
        {QStringLiteral("h point"), QPointF(-1.5, 2.25)},
        {QStringLiteral("i size"), QSizeF(3, 4)},
        {QStringLiteral("j rect"), QRectF(1, 2, 3, 4)},
        {QStringLiteral("k bytes"), QByteArray("\0\xff\n", 3)},
        {QStringLiteral("l minus zero"), -0.0},
        {QStringLiteral("m infinity"), std::numeric_limits<double>::infinity()},
        {QStringLiteral("n empty texts"), QStringList()},
        {QStringLiteral("o zero in a text"), QStringLiteral("a\0b")},
    };
}

inline void setUp(Saved &object)
{
    object.setSize(QSizeF(100, 50), false, false);
    object.setPos(QPointF(10, -20), false);
    object.setRotate(30, false);
    object.setKTRotateType(1);
    object.setMirror(true, false);
    object.setLayerShadow(QColor(1, 2, 3, 128), QPointF(4, 5));
    const auto params = everyType();
    for (auto param = params.begin(); param != params.end(); ++param)
        object.setOtherParams(param.key(), param.value());
}

inline void compareWithSetUp(Saved &object)
{
    QCOMPARE(object.objectId(), 7);
    QVERIFY(!object.isEditable());
    QCOMPARE(object.getSize(), QSizeF(100, 50));
    QCOMPARE(object.getPos(), QPointF(10, -20));
    QCOMPARE(object.pos(), QPointF(10, -20));
    QCOMPARE(object.getKTRotateDegree(), 30.0);
    QCOMPARE(object.getKTRotateType(), 1);
    QVERIFY(object.isMirrored());
    QVERIFY(!object.isFlipped());
    const auto expected = everyType();
    QCOMPARE(object.params().keys(), expected.keys());
    for (auto param = expected.begin(); param != expected.end(); ++param) {
        const QVariant value = object.getOtherParams(param.key());
        QCOMPARE(value.userType(), param.value().userType());
        QCOMPARE(value, param.value());
    }
    QVERIFY(std::signbit(object.getOtherParams(QStringLiteral("l minus zero")).toDouble()));
}

inline void compareWithNew(Saved &object)
{
    QCOMPARE(object.objectId(), 0);
    QVERIFY(object.isEditable());
    QCOMPARE(object.getSize(), QSizeF(0, 0));
    QCOMPARE(object.getPos(), QPointF(0, 0));
    QCOMPARE(object.getKTRotateType(), 2);
    QCOMPARE(object.params().size(), 0);
}
