#include "host/baseobject.h"

#include <QtCore/QBuffer>
#include <QtCore/QDataStream>
#include <QtCore/QLibrary>
#include <QtTest/QTest>

namespace
{

using Thumbnails = QList<QPair<QString, QImage>>;
using CreateObject = CBaseObject *(*)(int, int, bool);
using SetDefaultSpecialProperty = bool (*)(int, QDataStream &);
using GetAllThumbnail = void (*)(CBaseObject *, bool, Thumbnails &);

struct ReleaseObject {
    void operator()(CBaseObject *object) const { object->Release(); }
};
using Object = std::unique_ptr<CBaseObject, ReleaseObject>;

QImage redPicture(int width, int height)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(Qt::red);
    return image;
}

} // namespace

/// The plug-in as a host sees it: a file, and the names of three functions.
class TestObjectEntryPoints : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void theObjectIsAnAnimatedImage();
    void theSecondAndThirdArgumentAreTheBases_data();
    void theSecondAndThirdArgumentAreTheBases();
    void objectsAreSeparate();
    void defaultPropertiesAreAcceptedAndNotRead_data();
    void defaultPropertiesAreAcceptedAndNotRead();
    void thumbnailsAreAppended();
    void thumbnailsOfNothingLeaveTheList();
    void thumbnailsOfAnotherClassLeaveTheList();

private:
    Object create() const { return Object(m_create(7, 3, true)); }

    QLibrary m_plugin;
    CreateObject m_create = nullptr;
    SetDefaultSpecialProperty m_setDefault = nullptr;
    GetAllThumbnail m_thumbnails = nullptr;
};

void TestObjectEntryPoints::initTestCase()
{
    m_plugin.setFileName(QStringLiteral(PLUGIN_FILE));
    QVERIFY2(m_plugin.load(), qPrintable(m_plugin.errorString()));
    m_create = reinterpret_cast<CreateObject>(m_plugin.resolve("createObject_animatedImage"));
    m_setDefault = reinterpret_cast<SetDefaultSpecialProperty>(
        m_plugin.resolve("animatedImage_SetDefaultSpecialProperty"));
    m_thumbnails =
        reinterpret_cast<GetAllThumbnail>(m_plugin.resolve("animatedImage_GetAllThumbnail"));
    QVERIFY(m_create);
    QVERIFY(m_setDefault);
    QVERIFY(m_thumbnails);
}

void TestObjectEntryPoints::theObjectIsAnAnimatedImage()
{
    const Object object = create();
    QVERIFY(object);
    QCOMPARE(object->type(), 76836);
    QCOMPARE(object->type(), QGraphicsItem::UserType + 11300);
    QCOMPARE(object->getObjName(), QStringLiteral("animated image"));
    QCOMPARE(object->getImageSize(), QSize(0, 0));
    QCOMPARE(QString::fromLatin1(object->metaObject()->className()),
             QStringLiteral("CAnimatedImage"));
    QVERIFY(!object->parentItem());
    QVERIFY(!object->parentObject());
    QVERIFY(!object->GetPage());
    QVERIFY(!object->scene());
}

void TestObjectEntryPoints::theSecondAndThirdArgumentAreTheBases_data()
{
    QTest::addColumn<int>("unused");
    QTest::addColumn<int>("id");
    QTest::addColumn<bool>("editable");
    QTest::newRow("7, 3, true") << 7 << 3 << true;
    QTest::newRow("0, 3, true") << 0 << 3 << true;
    QTest::newRow("-1, -20, false") << -1 << -20 << false;
    QTest::newRow("3, 7, false") << 3 << 7 << false;
}

void TestObjectEntryPoints::theSecondAndThirdArgumentAreTheBases()
{
    QFETCH(int, unused);
    QFETCH(int, id);
    QFETCH(bool, editable);
    const Object object(m_create(unused, id, editable));
    QCOMPARE(object->objectId(), id);
    QCOMPARE(object->isEditable(), editable);
}

void TestObjectEntryPoints::objectsAreSeparate()
{
    const Object first = create();
    const Object second = create();
    const QImage picture = redPicture(4, 3);
    QVERIFY(first->loadFromImage(&picture));
    QCOMPARE(first->getImageSize(), QSize(4, 3));
    QCOMPARE(second->getImageSize(), QSize(0, 0));
}

void TestObjectEntryPoints::defaultPropertiesAreAcceptedAndNotRead_data()
{
    QTest::addColumn<int>("id");
    for (const int id : {0, -1, 5001, 5017, 2147483647})
        QTest::addRow("%d", id) << id;
}

void TestObjectEntryPoints::defaultPropertiesAreAcceptedAndNotRead()
{
    QFETCH(int, id);
    QBuffer buffer;
    buffer.setData(QByteArray("12345678"));
    QVERIFY(buffer.open(QIODevice::ReadWrite));
    QVERIFY(buffer.seek(2));
    QDataStream stream(&buffer);
    QVERIFY(m_setDefault(id, stream));
    QCOMPARE(buffer.pos(), 2);
    QCOMPARE(buffer.data(), QByteArray("12345678"));
    QCOMPARE(stream.status(), QDataStream::Ok);

    QDataStream withoutDevice;
    QVERIFY(m_setDefault(id, withoutDevice));
}

void TestObjectEntryPoints::thumbnailsAreAppended()
{
    const Object object = create();
    const QImage picture = redPicture(300, 100);
    QVERIFY(object->loadFromImage(&picture));
    Thumbnails thumbnails{{QStringLiteral("earlier"), QImage()}};
    m_thumbnails(object.get(), true, thumbnails);
    QCOMPARE(thumbnails.size(), 2);
    QCOMPARE(thumbnails.at(0).first, QStringLiteral("earlier"));
    QCOMPARE(thumbnails.at(1).second.size(), QSize(300, 100));
    m_thumbnails(object.get(), false, thumbnails);
    QCOMPARE(thumbnails.size(), 3);
    QCOMPARE(thumbnails.at(2).first, thumbnails.at(1).first);
    QCOMPARE(thumbnails.at(2).second.size(), QSize(150, 50));
}

void TestObjectEntryPoints::thumbnailsOfNothingLeaveTheList()
{
    const Thumbnails before{{QStringLiteral("earlier"), redPicture(2, 2)}};
    Thumbnails thumbnails = before;
    m_thumbnails(nullptr, true, thumbnails);
    m_thumbnails(nullptr, false, thumbnails);
    QCOMPARE(thumbnails, before);
}

void TestObjectEntryPoints::thumbnailsOfAnotherClassLeaveTheList()
{
    const Object other(new CBaseObject(1, true, nullptr, nullptr));
    const Thumbnails before{{QStringLiteral("earlier"), redPicture(2, 2)}};
    Thumbnails thumbnails = before;
    m_thumbnails(other.get(), true, thumbnails);
    m_thumbnails(other.get(), false, thumbnails);
    QCOMPARE(thumbnails, before);
}

QTEST_MAIN(TestObjectEntryPoints)
#include "tst_object_entrypoints.moc"
