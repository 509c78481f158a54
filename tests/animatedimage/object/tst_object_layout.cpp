#include "program.h"

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

namespace
{

/// The fields of a class in the order in which they are in memory, "type name" each, read from the
/// debug information of the library.
QStringList fieldsOf(const QString &className)
{
    // Such as: bool m_keepRatio; /* 256 1 */ - the first number is where it lies.
    const QRegularExpression field(QStringLiteral(
        "^(?:class |struct )?(\\S+) (\\*?)\\s*(\\w+);\\s*/\\*\\s*(\\d+)\\s+\\d+ \\*/$"));
    QMap<int, QString> byPlace;
    const auto lines = linesOf(QStringLiteral("pahole"),
                               {QStringLiteral("-C"), className, QStringLiteral(PLUGIN_FILE)});
    for (const QString &line : lines) {
        const QRegularExpressionMatch match = field.match(line.simplified());
        if (match.hasMatch()) {
            byPlace.insert(match.captured(4).toInt(), match.captured(1) + match.captured(2) +
                                                          QLatin1Char(' ') + match.captured(3));
        }
    }
    return byPlace.values();
}

} // namespace

/// The fields are in the order in which hosts know them; others may only follow.
class TestObjectLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFrameHasItsFieldsInOrder();
    void theObjectHasItsFieldsInOrder();
};

void TestObjectLayout::theFrameHasItsFieldsInOrder()
{
    const QStringList expected{
        QStringLiteral("QString name"),       QStringLiteral("QImage image"),
        QStringLiteral("QList<QRect> rects"), QStringLiteral("QPainterPath path"),
        QStringLiteral("QSize regionSize"),   QStringLiteral("QSizeF size"),
    };
    QCOMPARE(fieldsOf(QStringLiteral("CAnimatedPortrait")), expected);
}

void TestObjectLayout::theObjectHasItsFieldsInOrder()
{
    const QStringList expected{
        QStringLiteral("IGdDocument* m_belongDoc"),
        QStringLiteral("QTimer* m_shiftTimer"),
        QStringLiteral("QList<CAnimatedPortrait> m_portraits"),
        QStringLiteral("bool m_isRunning"),
        QStringLiteral("int m_runningIndex"),
        QStringLiteral("int m_loopsDone"),
        QStringLiteral("int m_shiftInterval"),
        QStringLiteral("bool m_keepRatio"),
        QStringLiteral("bool m_mirror"),
        QStringLiteral("bool m_flip"),
        QStringLiteral("int m_loopCount"),
        QStringLiteral("bool m_playEnabled"),
        QStringLiteral("bool m_wasRunning"),
        QStringLiteral("int m_elapsedMs"),
        QStringLiteral("int m_animatedType"),
        QStringLiteral("QRectF m_bgRect"),
        QStringLiteral("QImage m_bgImage"),
        QStringLiteral("QPointF m_bgPos"),
        QStringLiteral("bool m_savedRunning"),
        QStringLiteral("int m_savedIndex"),
        QStringLiteral("double m_handleSize"),
        QStringLiteral("QList<QSizeF> m_savedFrameSizes"),
    };
    const QStringList fields = fieldsOf(QStringLiteral("CAnimatedImage"));
    QCOMPARE(fields.mid(0, expected.size()), expected);
}

QTEST_GUILESS_MAIN(TestObjectLayout)
#include "tst_object_layout.moc"
