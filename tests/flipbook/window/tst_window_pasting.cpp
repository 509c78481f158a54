#include "flipbook/document/documentjson.h"
#include "flipbook/object/streamform.h"
#include "flipbook/window/import/importcontroller.h"
#include "flipbook/window/messagebar.h"
#include "tests/flipbook/bombs.h"
#include "tests/flipbook/window/windowfixture.h"
#include "tests/support/pictures.h"
#include "tests/support/quiet.h"

#include <QtCore/QMimeData>
#include <QtGui/QClipboard>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

/// Objects that come from another flipbook by the clipboard: nothing is decoded before it is known
/// how much memory all of them need, and what is damaged changes nothing. A film of 40 x 30 with
/// two frames is on the page.
class TestWindowPasting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fixture.reset(); }

    void objectsComeWithTheirPicturesAndSettings();
    void severalObjectsGetTheirOwnPictures();
    void aPictureThatClaimsToBeHugeRaisesAQuestion();
    void anAnswerOfYesPastesWhatIsBeyondTheBudget();
    void aFloodOfFramesWithoutPicturesRaisesAQuestion();
    void aHugeBackgroundRaisesAQuestion();
    void aClipboardThatEndsEarlyIsToldAndTheDocumentStays();
    void damagedObjectsAreToldAndTheDocumentStays_data();
    void damagedObjectsAreToldAndTheDocumentStays();
    void changedBytesDoNotHarmTheDocument();

private:
    QByteArray copied();
    static void put(const QByteArray &objects);
    /// A clipboard with one object, in the state of the film, with these pictures.
    QByteArray withPictures(const QVector<QByteArray> &pictures);
    static QByteArray withForms(const QVector<QByteArray> &forms);
    QString pasteAndCancel();
    QByteArray bytes() { return documentJson(m_fixture->session().document()); }
    QList<CBaseObject *> objects() { return m_fixture->page().objects(); }

    std::unique_ptr<WindowFixture> m_fixture;
    CBaseObject *m_film = nullptr;
};

namespace
{

/// The length of what follows the list of pictures in the stream form.
constexpr int settingsLength = 13;

} // namespace

void TestWindowPasting::init()
{
    m_fixture = std::make_unique<WindowFixture>();
    m_film = &m_fixture->addFilm({Qt::red, Qt::green});
    m_fixture->page().selectObjects({m_film});
    m_fixture->view().setFocus();
}

/// What copying the film puts on the clipboard.
QByteArray TestWindowPasting::copied()
{
    m_fixture->trigger("copy");
    return QApplication::clipboard()->mimeData()->data(
        QStringLiteral("application/x-flipbook-objects"));
}

void TestWindowPasting::put(const QByteArray &objects)
{
    auto *data = new QMimeData;
    data->setData(QStringLiteral("application/x-flipbook-objects"), objects);
    QApplication::clipboard()->setMimeData(data);
}

QByteArray TestWindowPasting::withForms(const QVector<QByteArray> &forms)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << quint32(forms.size());
    for (const QByteArray &form : forms)
        stream << form;
    return bytes;
}

QByteArray TestWindowPasting::withPictures(const QVector<QByteArray> &pictures)
{
    const QByteArray state =
        StreamForm::read(StreamForm::written(m_fixture->session().document(), *m_film))->state;
    QByteArray list;
    QDataStream stream(&list, QIODevice::WriteOnly);
    stream << quint32(pictures.size());
    for (const QByteArray &picture : pictures) {
        stream << qint32(picture.isEmpty() ? 0 : 1);
        stream.writeRawData(picture.constData(), picture.size());
    }
    return withForms({state.chopped(settingsLength) + list + state.right(settingsLength)});
}

/// Pastes, and says no to the question that must come. Returns the question.
QString TestWindowPasting::pasteAndCancel()
{
    const QByteArray before = bytes();
    QString question;
    QTimer::singleShot(0, qApp, [&question] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
            question = box->text();
            box->button(QMessageBox::Cancel)->click();
        }
    });
    m_fixture->trigger("paste");
    [&] {
        QCOMPARE(bytes(), before);
        QVERIFY(!m_fixture->session().isDirty());
        QCOMPARE(m_fixture->messages(), QStringList());
    }();
    return question;
}

void TestWindowPasting::objectsComeWithTheirPicturesAndSettings()
{
    AnimatedObject(*m_film).setInterval(70);
    m_film->setMirror(true, true);
    put(copied());
    m_fixture->trigger("paste");
    QCOMPARE(objects().size(), 2);
    CBaseObject &pasted = *objects().constLast();
    QCOMPARE(m_fixture->frameNames(pasted),
             QStringList({QStringLiteral("film_1"), QStringLiteral("film_2")}));
    QCOMPARE(m_fixture->frameColours(pasted), QList<QColor>({QColor(Qt::red), QColor(Qt::green)}));
    QCOMPARE(AnimatedObject(pasted).intervalMs(), 70);
    QCOMPARE(AnimatedObject(pasted).name(), QStringLiteral("film"));
    QVERIFY(pasted.isMirrored());
    QCOMPARE(pasted.getSize(), QSizeF(40, 30));
    QCOMPARE(m_fixture->messages(), QStringList());
    m_fixture->trigger("undo");
    QCOMPARE(objects(), QList<CBaseObject *>({m_film}));
}

void TestWindowPasting::severalObjectsGetTheirOwnPictures()
{
    CBaseObject &other = m_fixture->addFilm({Qt::blue, Qt::white, Qt::black}, {200, 100});
    m_fixture->page().selectObjects({m_film, &other});
    put(copied());
    m_fixture->trigger("paste");
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Paste 2 Objects")}));
    QCOMPARE(m_fixture->frameColours(*objects().at(2)),
             QList<QColor>({QColor(Qt::red), QColor(Qt::green)}));
    QCOMPARE(m_fixture->frameColours(*objects().at(3)),
             QList<QColor>({QColor(Qt::blue), QColor(Qt::white), QColor(Qt::black)}));
}

void TestWindowPasting::aPictureThatClaimsToBeHugeRaisesAQuestion()
{
    const QByteArray claiming = Bombs::claimingPng(60000, 60000);
    QVERIFY(claiming.size() < 100);
    put(withPictures({Bombs::png(QSize(4, 4)), claiming}));
    // Four bytes for each of 3,600 million pixels are 13.4 GiB; the usual limit applies.
    QCOMPARE(pasteAndCancel(),
             QStringLiteral("The clipboard would need 13.4 GiB of memory, which is more than the "
                            "limit of 2.0 GiB."));
}

void TestWindowPasting::anAnswerOfYesPastesWhatIsBeyondTheBudget()
{
    // Two pictures of 40 x 30 pixels of four bytes, and 1,024 bytes for each frame.
    m_fixture->window().importer().work().setMemoryBudget(11647);
    put(copied());
    QVERIFY(!pasteAndCancel().isEmpty());
    m_fixture->answerNext(QMessageBox::Yes);
    m_fixture->trigger("paste");
    QCOMPARE(objects().size(), 2);
    QCOMPARE(m_fixture->frameColours(*objects().constLast()),
             QList<QColor>({QColor(Qt::red), QColor(Qt::green)}));
    QCOMPARE(m_fixture->messages(), QStringList());
}

void TestWindowPasting::aFloodOfFramesWithoutPicturesRaisesAQuestion()
{
    // 8 MiB on the clipboard, and 1,024 bytes in memory for each frame: the limit of 2 GiB and one.
    put(withPictures(QVector<QByteArray>(2097153)));
    const QString question = pasteAndCancel();
    QVERIFY2(question.startsWith(QLatin1String("The clipboard would need 2.0 GiB of memory")),
             qPrintable(question));
}

void TestWindowPasting::aHugeBackgroundRaisesAQuestion()
{
    // The picture that fills a background of this size would take 16 copies of it.
    m_film->setSize(QSizeF(60000, 60000), true, false);
    QByteArray bytes = withPictures({Bombs::png(QSize(40, 30))});
    const QByteArray key("animatedType");
    const int type = bytes.indexOf(key) + key.size() + 1;
    QVERIFY(bytes.indexOf(key) > 0);
    QCOMPARE(bytes.mid(type, 4), QByteArray(4, '\xff'));
    put(bytes.replace(type, 4, QByteArray("\0\0\0\1", 4)));
    const QString question = pasteAndCancel();
    QVERIFY2(question.startsWith(QLatin1String("The clipboard would need ")), qPrintable(question));
}

void TestWindowPasting::aClipboardThatEndsEarlyIsToldAndTheDocumentStays()
{
    const QByteArray whole = copied();
    const QByteArray before = bytes();
    for (int length = 0; length < whole.size(); ++length) {
        put(whole.left(length));
        m_fixture->trigger("paste");
        QCOMPARE(m_fixture->messages(),
                 QStringList({QStringLiteral(
                     "The clipboard: its content is damaged, and nothing was pasted")}));
        m_fixture->window().messages().clear();
    }
    QCOMPARE(bytes(), before);
    QVERIFY(!m_fixture->session().isDirty());
}

void TestWindowPasting::damagedObjectsAreToldAndTheDocumentStays_data()
{
    QTest::addColumn<QByteArray>("clipboard");
    init();
    const QByteArray good = Bombs::png(QSize(4, 4));
    const QByteArray form = StreamForm::written(m_fixture->session().document(), *m_film);
    QTest::newRow("no objects") << withForms({});
    QTest::newRow("an object without anything") << withForms({QByteArray()});
    QTest::newRow("a good object and a bad one") << withForms({form, QByteArray("garbage")});
    QTest::newRow("more objects than there are")
        << QByteArray("\xff\xff\xff\xff", 4) + withForms({form}).mid(4);
    QTest::newRow("something after the objects") << withForms({form}) + QByteArray(4, '\0');
    QTest::newRow("a picture that ends early") << withPictures({good.chopped(8)});
    QTest::newRow("a picture of another format") << withPictures({QByteArray("GIF89a")});
    QTest::newRow("a chunk longer than the picture")
        << withPictures({good.left(33) + QByteArray("\x7f\xff\xff\xff", 4) + good.mid(37)});
    QTest::newRow("a picture without pixels")
        << withPictures({good.left(33) + Bombs::pngChunk("IEND", {})});
    QByteArray reference = StreamForm::read(form)->state.chopped(settingsLength + 1);
    reference += char(1) + QByteArray("\0\0\0\x0b/etc/passwd", 15);
    QTest::newRow("a reference to a file") << withForms({reference + QByteArray(13, '\0')});
    cleanup();
}

void TestWindowPasting::damagedObjectsAreToldAndTheDocumentStays()
{
    QFETCH(const QByteArray, clipboard);
    const QByteArray before = bytes();
    put(clipboard);
    const Quiet quiet;
    m_fixture->trigger("paste");
    QCOMPARE(bytes(), before);
    QVERIFY(!m_fixture->session().isDirty());
    QCOMPARE(m_fixture->messages().size(), 1);
}

void TestWindowPasting::changedBytesDoNotHarmTheDocument()
{
    const QByteArray whole = copied();
    const QByteArray before = bytes();
    const Quiet quiet;
    // A third of the bytes: each number and each chunk is met.
    for (int at = 0; at < whole.size(); at += 3) {
        QByteArray changed = whole;
        changed[at] = char(changed.at(at) ^ 0x81);
        put(changed);
        QTimer refuser;
        refuser.callOnTimeout(&refuser, [] {
            if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
                box->button(QMessageBox::Cancel)->click();
        });
        refuser.start(1);
        m_fixture->trigger("paste");
        m_fixture->window().messages().clear();
        if (m_fixture->session().undoStack().canUndo())
            m_fixture->trigger("undo");
        QVERIFY2(objects() == QList<CBaseObject *>({m_film}), qPrintable(QString::number(at)));
    }
    QCOMPARE(bytes(), before);
}

QTEST_MAIN(TestWindowPasting)
#include "tst_window_pasting.moc"
