#include "flipbook/document/documentfile.h"
#include "flipbook/window/frames/framepanel.h"
#include "flipbook/window/frames/framestrip.h"
#include "flipbook/window/lists/draglist.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/window/windowfixture.h"
#include "tests/support/gifbuilder.h"

#include <QtCore/QLoggingCategory>
#include <QtCore/QRandomGenerator>
#include <QtTest/QtTest>
#include <QtWidgets/QAction>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDoubleSpinBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QSpinBox>

#include <algorithm>

namespace
{

// Actions that ask nothing. Undo knows those that change the document.
const char *const actionIds[] = {"undo",
                                 "redo",
                                 "copy",
                                 "paste",
                                 "cut",
                                 "duplicate",
                                 "delete",
                                 "select-all",
                                 "raise",
                                 "lower",
                                 "raise-to-top",
                                 "lower-to-bottom",
                                 "align-left",
                                 "align-center",
                                 "align-right",
                                 "align-top",
                                 "align-middle",
                                 "align-bottom",
                                 "mirror",
                                 "flip",
                                 "add-page",
                                 "duplicate-page",
                                 "delete-page",
                                 "move-page-up",
                                 "move-page-down",
                                 "previous-page",
                                 "next-page",
                                 "insert-blank-frame",
                                 "duplicate-frames",
                                 "reverse-frames",
                                 "move-frames-left",
                                 "move-frames-right",
                                 "delete-frames",
                                 "onion-skin",
                                 "zoom-in",
                                 "zoom-out",
                                 "zoom-original",
                                 "zoom-fit",
                                 "reset-layout"};
/// Of these there would soon be too many.
bool isGrowing(const char *id)
{
    static const char *const growing[] = {"paste",    "duplicate",        "duplicate-page",
                                          "add-page", "duplicate-frames", "insert-blank-frame"};
    return std::any_of(std::begin(growing), std::end(growing),
                       [id](const char *one) { return qstrcmp(one, id) == 0; });
}

constexpr int mostObjects = 12;
constexpr int mostPages = 6;
constexpr int mostFrames = 30;

int environmentNumber(const char *variable, int usual)
{
    const int wanted = qEnvironmentVariableIntValue(variable);
    return wanted > 0 ? wanted : usual;
}

} // namespace

/// A user who does anything in any order. Undoing all of it gives the first bytes.
/// FLIPBOOK_WALK_STEPS asks for longer walks, and FLIPBOOK_WALK_SEED for another one.
class TestWindowWalk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // A line for each time an object starts or stops.
    void initTestCase() { QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false")); }
    void undoingAllGivesTheFirstBytes_data();
    void undoingAllGivesTheFirstBytes();

private:
    void makeFiles();
    void doSomething();
    void select();
    void dragSomething();
    void dragAHandle();
    void nudge();
    void work();
    void workOnFrames();
    void dragAPage();
    void rename();
    void typeNumber();
    void setSwitch();
    void addFiles();
    void jumpInHistory();
    bool isCrowded();
    QByteArray bytes();
    int below(int bound) { return int(m_random.bounded(quint32(bound))); }
    bool byChance(int among) { return below(among) == 0; }
    QPointF somewhere() { return QPointF(below(400), below(300)); }
    Qt::KeyboardModifiers someModifiers();
    FrameStrip &strip() { return m_fixture->window().frames().strip(); }
    template<typename Widget>
    Widget &control(const char *name)
    {
        return *m_fixture->window().findChild<Widget *>(QLatin1String(name));
    }

    std::unique_ptr<WindowFixture> m_fixture;
    QStringList m_files;
    QRandomGenerator m_random;
};

void TestWindowWalk::undoingAllGivesTheFirstBytes_data()
{
    QTest::addColumn<quint32>("seed");
    QVector<quint32> seeds = {1, 2, 3};
    const int wanted = environmentNumber("FLIPBOOK_WALK_SEED", 0);
    if (wanted > 0)
        seeds = {quint32(wanted)};
    for (const quint32 seed : qAsConst(seeds))
        QTest::addRow("seed %u", seed) << seed;
}

/// What is saved of the document.
QByteArray TestWindowWalk::bytes()
{
    const QString path = m_fixture->path(QStringLiteral("saved.flipbook"));
    saveDocument(m_fixture->session().document(), path);
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void TestWindowWalk::makeFiles()
{
    m_files.clear();
    for (const QColor &colour : {QColor(Qt::yellow), QColor(Qt::cyan)})
        m_files << m_fixture->writePicture(colour.name().mid(1) + QStringLiteral(".png"), colour,
                                           {24, 18});
    for (const QVector<int> &delaysCs : {QVector<int>{10, 10, 10}, QVector<int>{10, 30, 20}}) {
        GifBuilder builder(20, 10);
        for (int i = 0; i < delaysCs.size(); ++i)
            builder.add(i % 3, delaysCs.at(i));
        m_files << m_fixture->path(QStringLiteral("%1.gif").arg(m_files.size()));
        builder.write(m_files.last());
    }
    m_files << m_fixture->path(QStringLiteral("bad.gif"));
    writeBytes(m_files.last(), "GIF89a");
}

Qt::KeyboardModifiers TestWindowWalk::someModifiers()
{
    Qt::KeyboardModifiers modifiers;
    modifiers.setFlag(Qt::ShiftModifier, byChance(3));
    modifiers.setFlag(Qt::AltModifier, byChance(4));
    return modifiers;
}

void TestWindowWalk::select()
{
    QList<CBaseObject *> chosen;
    const QList<CBaseObject *> objects = m_fixture->page().objects();
    for (CBaseObject *object : objects) {
        if (byChance(2))
            chosen.append(object);
    }
    if (!byChance(4) && !objects.isEmpty())
        chosen = {objects.at(below(objects.size()))};
    m_fixture->page().selectObjects(chosen);
}

void TestWindowWalk::dragSomething()
{
    const QPointF from = somewhere();
    const QPointF to = somewhere();
    const Qt::KeyboardModifiers modifiers = someModifiers();
    m_fixture->press(from, modifiers);
    m_fixture->moveTo(to, modifiers);
    if (byChance(6))
        QTest::keyClick(&m_fixture->view(), Qt::Key_Escape);
    if (byChance(6))
        m_fixture->window().actions().action(QStringLiteral("undo"))->trigger();
    m_fixture->release(to, modifiers);
}

void TestWindowWalk::dragAHandle()
{
    const CBaseObject *film = m_fixture->session().film();
    if (!film)
        return;
    const QRectF bounds = film->mapRectToScene(film->getClientRect());
    const QPointF corner =
        byChance(2) ? bounds.bottomRight() : QPointF(bounds.left(), bounds.center().y());
    const Qt::KeyboardModifiers modifiers = someModifiers();
    m_fixture->drag(corner, corner + QPointF(below(60) - 30, below(60) - 30), modifiers);
}

void TestWindowWalk::nudge()
{
    static constexpr Qt::Key keys[] = {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down};
    m_fixture->view().setFocus();
    QTest::keyClick(&m_fixture->view(), keys[below(4)],
                    byChance(3) ? Qt::ShiftModifier : Qt::NoModifier);
}

bool TestWindowWalk::isCrowded()
{
    return m_fixture->page().objects().size() > mostObjects ||
           m_fixture->session().document().pages().size() >= mostPages ||
           strip().model()->rowCount() > mostFrames;
}

void TestWindowWalk::work()
{
    const char *id = actionIds[below(int(std::size(actionIds)))];
    if (isGrowing(id) && isCrowded())
        return;
    if (m_fixture->isEnabled(id))
        m_fixture->trigger(id);
}

void TestWindowWalk::workOnFrames()
{
    const int count = strip().model()->rowCount();
    QVector<int> rows;
    for (int row = 0; row < count; ++row) {
        if (byChance(3))
            rows.append(row);
    }
    strip().selectRows(rows);
    if (byChance(2))
        strip().setFocus();
    else
        m_fixture->view().setFocus();
    if (count == 0 || rows.isEmpty())
        return;
    if (byChance(3))
        Q_EMIT strip().moveWanted(rows, below(count + 1));
    else if (byChance(4) && !isCrowded())
        Q_EMIT strip().copyWanted(rows, below(count + 1));
}

void TestWindowWalk::dragAPage()
{
    const int count = m_fixture->session().document().pages().size();
    auto &list = control<DragList>("pageList");
    if (byChance(3) && !isCrowded())
        Q_EMIT list.copyWanted({below(count)}, below(count + 1));
    else
        Q_EMIT list.moveWanted({below(count)}, below(count + 1));
}

void TestWindowWalk::rename()
{
    const int count = strip().model()->rowCount();
    const QString name = QStringLiteral("name %1").arg(below(5));
    if (count > 0 && byChance(2)) {
        strip().model()->setData(strip().model()->index(below(count), 0), name, Qt::EditRole);
        return;
    }
    auto &line = control<QLineEdit>("name");
    if (!m_fixture->session().film())
        return;
    line.selectAll();
    QTest::keyClicks(&line, name);
    QTest::keyClick(&line, Qt::Key_Return);
}

void TestWindowWalk::typeNumber()
{
    static const char *const boxes[] = {"x", "y", "width", "height", "angle"};
    if (m_fixture->session().selection().isEmpty())
        return;
    if (byChance(4) && m_fixture->session().film())
        control<QSpinBox>("idShiftInterval").setValue(20 + below(200));
    else
        control<QDoubleSpinBox>(boxes[below(5)]).setValue(10 + below(200));
}

void TestWindowWalk::setSwitch()
{
    static const char *const boxes[] = {"keepRatio", "mirror", "flip"};
    if (m_fixture->session().selection().isEmpty())
        return;
    if (byChance(4)) {
        auto &type = control<QComboBox>("type");
        type.setCurrentIndex(below(2));
        Q_EMIT type.activated(type.currentIndex());
    } else {
        control<QCheckBox>(boxes[below(3)]).click();
    }
}

void TestWindowWalk::addFiles()
{
    if (isCrowded())
        return;
    const QStringList files = m_files.mid(below(m_files.size()), 1 + below(3));
    if (byChance(2) && m_fixture->session().film())
        m_fixture->drop(*strip().viewport(), QPoint(below(300), 30), files);
    else
        m_fixture->dropOnPage(somewhere(), files);
}

void TestWindowWalk::jumpInHistory()
{
    QUndoStack &stack = m_fixture->session().undoStack();
    const int way = below(8) - 4;
    stack.setIndex(qBound(0, stack.index() + way, stack.count()));
}

void TestWindowWalk::doSomething()
{
    static constexpr void (TestWindowWalk::*deeds[])() = {
        &TestWindowWalk::select,       &TestWindowWalk::select,    &TestWindowWalk::dragSomething,
        &TestWindowWalk::dragAHandle,  &TestWindowWalk::nudge,     &TestWindowWalk::work,
        &TestWindowWalk::work,         &TestWindowWalk::work,      &TestWindowWalk::work,
        &TestWindowWalk::workOnFrames, &TestWindowWalk::dragAPage, &TestWindowWalk::rename,
        &TestWindowWalk::typeNumber,   &TestWindowWalk::setSwitch, &TestWindowWalk::addFiles,
        &TestWindowWalk::jumpInHistory};
    (this->*deeds[below(int(std::size(deeds)))])();
    // What is queued happens at once or some steps later, as with a quick hand.
    if (!byChance(3))
        QCoreApplication::processEvents();
}

void TestWindowWalk::undoingAllGivesTheFirstBytes()
{
    QFETCH(quint32, seed);
    m_random.seed(seed);
    m_fixture = std::make_unique<WindowFixture>();
    makeFiles();
    m_fixture->addFilm({Qt::red, Qt::green, Qt::blue});
    m_fixture->addFilm({Qt::white, Qt::black}, {200, 120});
    const QByteArray before = bytes();
    const int steps = environmentNumber("FLIPBOOK_WALK_STEPS", 200);
    for (int i = 0; i < steps; ++i) {
        doSomething();
        if (QTest::currentTestFailed()) {
            qInfo("seed %u, step %d", seed, i + 1);
            return;
        }
    }
    QCoreApplication::processEvents();
    QVERIFY(bytes() != before);
    while (m_fixture->session().undoStack().canUndo())
        m_fixture->trigger("undo");
    QVERIFY2(bytes() == before, "the saved document differs from the first one");
    m_fixture.reset();
}

QTEST_MAIN(TestWindowWalk)
#include "tst_window_walk.moc"
