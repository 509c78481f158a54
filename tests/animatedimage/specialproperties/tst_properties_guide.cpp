#include "animatedimage/protocol/entrypoints.h"
#include "tests/animatedimage/specialproperties/knownrequests.h"
#include "tests/animatedimage/specialproperties/snapshot.h"
#include "tests/support/pictures.h"
#include "tests/support/quiet.h"
#include "tests/support/request.h"

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

/// The integrator's guide lists the identifiers that the object answers to, found out by asking.
class TestPropertiesGuide : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theGuideListsWhatTheObjectHandles();
    void aMissingRowIsNoticed();
    void aRowTooManyIsNoticed();
    void aRowInTheWrongTableIsNoticed();
    void theGuideListsTheAttributesThatTheObjectHandles();
    void theGuideNamesNumbersAsTheConstantsDo();
    void requestsAreKnownForAllOfThem();
    void everyOtherNumberGoesToTheBase_data();
    void everyOtherNumberGoesToTheBase();
    void defaultPropertiesAreAcceptedAndIgnored();
};

namespace
{

constexpr int firstAsked = 4990;
constexpr int lastAsked = 5030;

/// A buffer that notes whether anybody has read, written or moved about in it.
class WatchedBuffer : public QBuffer
{
public:
    explicit WatchedBuffer(const QByteArray &content)
    {
        setData(content);
        open(ReadWrite | Unbuffered);
        m_touched = false;
    }

    bool seek(qint64 position) override
    {
        m_touched = true;
        return QBuffer::seek(position);
    }
    bool isTouched() const { return m_touched; }

protected:
    qint64 readData(char *data, qint64 most) override
    {
        m_touched = true;
        return QBuffer::readData(data, most);
    }
    qint64 writeData(const char *data, qint64 count) override
    {
        m_touched = true;
        return QBuffer::writeData(data, count);
    }

private:
    bool m_touched = false;
};

/// Whether the object itself does anything at all about an identifier: it answers true, which
/// the base never does, uses the stream, changes, or tells the host something.
bool isHandled(KnownRequest::Direction direction, int id)
{
    const Quiet quiet; // the requests are zeros, and Qt warns of an empty path
    Stage stage(solidFrames({{4, 3}, {5, 6}, {7, 2}}));
    stage.image->playImage(true);
    const Snapshot before(stage);
    WatchedBuffer buffer(QByteArray(16, '\0'));
    QDataStream stream(&buffer);
    const KnownRequest request{direction, id, KnownRequest::Reads, {}, false};
    const bool result = request.send(stage.image, stream);
    const bool handled = result || buffer.isTouched() || Snapshot(stage) != before;
    Framework::instance().dropUndoCommands();
    return handled;
}

QString row(KnownRequest::Direction direction, int id)
{
    const bool isGet = direction == KnownRequest::Get;
    return QStringLiteral("%1 %2")
        .arg(isGet ? QStringLiteral("get") : QStringLiteral("set"))
        .arg(id);
}

QStringList handledRows()
{
    QStringList rows;
    for (const auto direction : {KnownRequest::Get, KnownRequest::Set}) {
        for (int id = firstAsked; id <= lastAsked; ++id) {
            if (isHandled(direction, id))
                rows.append(row(direction, id));
        }
    }
    return rows;
}

/// The numbers of the attributes that are answered true, by the object or by its base.
QStringList handledAttributes()
{
    QStringList numbers;
    for (int id = 2600; id < 2900; ++id) {
        Stage stage(solidFrames({{4, 3}}));
        Request request(QByteArray(2, '\0'));
        if (stage->SetAttribute(id, request.stream(), false))
            numbers.append(QString::number(id));
    }
    return numbers;
}

QString textOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QString guide()
{
    return textOf(QFINDTESTDATA("../../../docs/integrators.md"));
}

/// What the groups of @p form find in @p text, joined by a blank.
QStringList found(const QString &form, const QString &text)
{
    const QRegularExpression expression(form, QRegularExpression::MultilineOption);
    QStringList rows;
    auto matches = expression.globalMatch(text);
    while (matches.hasNext())
        rows.append(matches.next().capturedTexts().mid(1).join(QLatin1Char(' ')));
    return rows;
}

QStringList rowsOf(const QString &text)
{
    return found(QStringLiteral("^\\| *(get|set) *\\| *(\\d+) *\\|"), text);
}

/// What one of two lists has and the other has not, or has another number of times.
QStringList differences(QStringList handled, QStringList listed)
{
    QStringList found;
    for (const QString &name : qAsConst(handled)) {
        if (!listed.removeOne(name))
            found.append(QStringLiteral("not in the guide: ") + name);
    }
    for (const QString &name : qAsConst(listed))
        found.append(QStringLiteral("only in the guide: ") + name);
    return found;
}

} // namespace

void TestPropertiesGuide::theGuideListsWhatTheObjectHandles()
{
    const QStringList handled = handledRows();
    QCOMPARE(handled.size(), 25);
    QCOMPARE(differences(handled, rowsOf(guide())), QStringList());
}

void TestPropertiesGuide::aMissingRowIsNoticed()
{
    QString text = guide();
    const QStringList handled = handledRows();
    for (const QString &name : handled) {
        const QString start = QStringLiteral("| %1 |").arg(
            QString(name).replace(QLatin1Char(' '), QStringLiteral(" | ")));
        QVERIFY2(text.contains(start), qPrintable(start));
        QCOMPARE(differences(handled, rowsOf(QString(text).replace(start, QStringLiteral("| |")))),
                 QStringList{QStringLiteral("not in the guide: ") + name});
    }
}

void TestPropertiesGuide::aRowTooManyIsNoticed()
{
    const QString text = guide() + QStringLiteral("\n| get | 5009 | `DeleteFrame` | none |\n");
    QCOMPARE(differences(handledRows(), rowsOf(text)),
             QStringList{QStringLiteral("only in the guide: get 5009")});
}

void TestPropertiesGuide::aRowInTheWrongTableIsNoticed()
{
    const QString text =
        guide().replace(QStringLiteral("| set | 5016 |"), QStringLiteral("| get | 5016 |"));
    QCOMPARE(differences(handledRows(), rowsOf(text)),
             (QStringList{QStringLiteral("not in the guide: set 5016"),
                          QStringLiteral("only in the guide: get 5016")}));
}

void TestPropertiesGuide::theGuideListsTheAttributesThatTheObjectHandles()
{
    const QStringList handled = handledAttributes();
    QCOMPARE(handled.size(), 5);
    const QString row = QStringLiteral("^\\| *(2\\d{3}) *\\|");
    QCOMPARE(differences(handled, found(row, guide())), QStringList());
}

void TestPropertiesGuide::theGuideNamesNumbersAsTheConstantsDo()
{
    const QString constant = QStringLiteral("^constexpr int (\\w+) = (\\d+);");
    QStringList constants;
    for (const QString &header : {QFINDTESTDATA("../../../host/specialpropertyids.h"),
                                  QFINDTESTDATA("../../../host/attributeids.h")})
        constants += found(constant, textOf(header));
    QCOMPARE(constants.size(), 26);
    const QString row = QStringLiteral("^\\| (?:(?:get|set) \\| )?(\\d{4}) \\| `(\\w+)` \\|");
    QStringList named;
    QStringList rows = found(row, guide());
    rows.removeDuplicates(); // a number may be one to get and one to set
    for (const QString &text : qAsConst(rows))
        named.append(text.section(QLatin1Char(' '), 1) + QLatin1Char(' ') + text.left(4));
    QCOMPARE(differences(constants, named), QStringList());
}

void TestPropertiesGuide::requestsAreKnownForAllOfThem()
{
    QStringList known;
    Stage other;
    const auto requests = knownRequests(QString(), other.image);
    for (const KnownRequest &request : requests)
        known.append(row(request.direction, request.id));
    QCOMPARE(differences(handledRows(), known), QStringList());
}

void TestPropertiesGuide::everyOtherNumberGoesToTheBase_data()
{
    QTest::addColumn<bool>("isGet");
    QTest::addColumn<int>("id");
    for (int id : {5009, 5015, 5016, 5001, 5004, 5022, 0, -5005, 2147483647})
        QTest::addRow("get %d", id) << true << id;
    for (int id : {5006, 5010, 5011, 5012, 5014, 5000, 5017, 5020, 5021, 0, -1, 2147483647})
        QTest::addRow("set %d", id) << false << id;
}

void TestPropertiesGuide::everyOtherNumberGoesToTheBase()
{
    QFETCH(bool, isGet);
    QFETCH(int, id);
    Stage stage(solidFrames({{4, 3}, {5, 6}}));
    const Snapshot before(stage);
    Request request(QByteArray::fromHex("0000000000000001"));
    request.from(2);

    QVERIFY(!(isGet ? request.get(stage.image, id) : request.set(stage.image, id, true)));

    QVERIFY(Snapshot(stage) == before);
    QCOMPARE(request.position(), qint64(2));
    QCOMPARE(request.bytes().toHex(), QByteArray("0000000000000001"));
}

void TestPropertiesGuide::defaultPropertiesAreAcceptedAndIgnored()
{
    for (int id : {0, -1, 5001, 5021, 2147483647}) {
        Request request(QByteArray::fromHex("00000001"));
        QVERIFY(CAnimatedImage::SetDefaultSpecialProperty(id, request.stream()));
        QVERIFY(animatedImage_SetDefaultSpecialProperty(id, request.stream()));
        QCOMPARE(request.position(), qint64(0));
        QCOMPARE(request.bytes().toHex(), QByteArray("00000001"));
    }
    QDataStream none;
    QVERIFY(animatedImage_SetDefaultSpecialProperty(5001, none));
}

QTEST_MAIN(TestPropertiesGuide)
#include "tst_properties_guide.moc"
