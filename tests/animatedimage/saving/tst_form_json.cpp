#include "tests/animatedimage/saving/forms.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"
#include "tests/support/stage.h"

#include <QtCore/QJsonArray>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

namespace
{

/// The members that load() looks for, except the base's and the pictures.
QStringList ownMembers()
{
    return {QStringLiteral("IsGif"),          QStringLiteral("ShiftInterval"),
            QStringLiteral("LockScale"),      QStringLiteral("ImageMirror"),
            QStringLiteral("ImageFlip"),      QStringLiteral("LoopCount"),
            QStringLiteral("UseGifInterval"), QStringLiteral("IsRunning")};
}

/// What the base class alone writes.
QJsonObject baseJson()
{
    Stage stage;
    QJsonObject json;
    stage->CBaseObject::saveJson(json);
    return json;
}

} // namespace

/// The JSON form.
class TestFormJson : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everySettingHasItsMember()
    {
        Stage stage(solidFrames({{4, 3}}));
        stage.probe.shiftInterval() = 70;
        stage.probe.keepRatio() = false;
        stage.probe.mirror() = true;
        stage.probe.loopCount() = 4;
        stage.probe.isRunning() = true;
        const QJsonObject json = Forms::savedJson(*stage.image);
        QCOMPARE(json.value(QLatin1String("IsGif")), QJsonValue(false));
        QCOMPARE(json.value(QLatin1String("ShiftInterval")), QJsonValue(70));
        QCOMPARE(json.value(QLatin1String("LockScale")), QJsonValue(false));
        QCOMPARE(json.value(QLatin1String("ImageMirror")), QJsonValue(true));
        QCOMPARE(json.value(QLatin1String("ImageFlip")), QJsonValue(false));
        QCOMPARE(json.value(QLatin1String("LoopCount")), QJsonValue(4));
        QCOMPARE(json.value(QLatin1String("UseGifInterval")), QJsonValue(false));
        QCOMPARE(json.value(QLatin1String("IsRunning")), QJsonValue(true));
        QCOMPARE(json.value(QLatin1String("ImageList")).toArray().size(), 1);
        QVERIFY(!json.contains(QLatin1String("GifFileName")));
    }

    void nothingButTheBasesMembersReadsAsAnEmptyStoppedObject()
    {
        Stage stage;
        stage.probe.mirror() = true;
        stage.probe.flip() = true;
        QJsonObject json = baseJson();
        QVERIFY(stage->loadJson(json));
        QVERIFY(stage.probe.frames().isEmpty());
        QCOMPARE(stage.probe.shiftInterval(), 0);
        QCOMPARE(stage.probe.loopCount(), 0);
        QVERIFY(!stage.probe.keepRatio());
        QVERIFY(!stage.probe.mirror());
        QVERIFY(!stage.probe.flip());
        QVERIFY(!stage.probe.isRunning());
    }

    void membersThatWereLookedForInVainAreAddedAsNull()
    {
        Stage stage;
        QJsonObject json = baseJson();
        stage->loadJson(json);
        const QStringList members = ownMembers();
        for (const QString &member : members) {
            QVERIFY2(json.contains(member), qPrintable(member));
            QVERIFY2(json.value(member).isNull(), qPrintable(member));
        }
        QVERIFY(!json.contains(QLatin1String("GifFileName")));
    }

    void aSavedRunningStateAndGifIntervalChangeNothing()
    {
        Stage from(solidFrames({{4, 3}}));
        QJsonObject json = Forms::savedJson(*from.image);
        json[QLatin1String("IsRunning")] = true;
        json[QLatin1String("UseGifInterval")] = true;
        Stage to;
        to->loadJson(json);
        QVERIFY(!to.probe.isRunning());
        QCOMPARE(to.probe.shiftInterval(), 200);
        QCOMPARE(to.probe.frames().size(), 1);
    }

    void mistypedMembersReadAsMissingOnes()
    {
        Stage from(solidFrames({{4, 3}}));
        QJsonObject json = Forms::savedJson(*from.image);
        json[QLatin1String("ShiftInterval")] = QStringLiteral("70");
        json[QLatin1String("LoopCount")] = 1.5;
        json[QLatin1String("LockScale")] = 1;
        json[QLatin1String("ImageList")] = QStringLiteral("none");
        Stage to;
        to->loadJson(json);
        QCOMPARE(to.probe.shiftInterval(), 0);
        QCOMPARE(to.probe.loopCount(), 0);
        QVERIFY(!to.probe.keepRatio());
        QVERIFY(to.probe.frames().isEmpty());
    }

    void aReferenceToAGifTakesThePlaceOfPictures()
    {
        QTemporaryDir folder;
        StoredObject stored;
        stored.document.referredFile = folder.filePath(QStringLiteral("film.gif"));
        GifBuilder(6, 5).loop(3).add(0, 12).add(1, 12).write(stored.document.referredFile);

        Stage other(solidFrames({{4, 3}}));
        QJsonObject json = Forms::savedJson(*other.image);
        json[QLatin1String("IsGif")] = true;
        json[QLatin1String("GifFileName")] = QStringLiteral("anything");
        json[QLatin1String("ShiftInterval")] = 50;
        QVERIFY(stored.image->loadJson(json));
        QVERIFY(stored.document.isMarkerFound);
        QCOMPARE(stored.document.referenceKey, QStringLiteral("GifFileName"));
        QCOMPARE(stored.probe.frames().size(), 2);
        QCOMPARE(stored.probe.frame(0).name, QStringLiteral("film_1"));
        QCOMPARE(stored.probe.shiftInterval(), 120);
        QCOMPARE(stored.probe.loopCount(), 2);
    }

    void theFrameworksOwnDocumentReadsItsReferencesToGifs()
    {
        QTemporaryDir folder;
        GifBuilder(6, 5).add(0, 12).add(1, 12).write(folder.filePath(QStringLiteral("film.gif")));
        Stage stage;
        stage.document.setBaseFolder(folder.path());
        Stage other;
        QJsonObject json = Forms::savedJson(*other.image);
        json[QLatin1String("IsGif")] = true;
        QString path = folder.filePath(QStringLiteral("film.gif"));
        stage.document.jsonFileReference(json, path, QStringLiteral("GifFileName"), true);
        stage->loadJson(json);
        QCOMPARE(stage.probe.frames().size(), 2);
        QCOMPARE(stage.probe.frame(1).name, QStringLiteral("film_2"));
    }

    void bothFormsLeadToTheSameObject()
    {
        Stage from(solidFrames({{4, 3}, {5, 6}}));
        from.probe.frame(1).size = QSizeF(1.25, 2.5);
        from.probe.animatedType() = 1;
        from.probe.bgRect() = QRectF(0.1, 0.2, 0.3, 0.4);
        QJsonObject json = Forms::savedJson(*from.image);
        Stage byJson;
        byJson->loadJson(json);
        Stage byStream;
        Forms::load(*byStream.image, Forms::saved(*from.image));
        QCOMPARE(Forms::saved(*byJson.image), Forms::saved(*byStream.image));
        QCOMPARE(Forms::saved(*byJson.image), Forms::saved(*from.image));
        QCOMPARE(Forms::savedJson(*byStream.image), Forms::savedJson(*from.image));
        QCOMPARE(byJson.probe.bgImage().size(), QSize(8, 6));
    }
};

QTEST_MAIN(TestFormJson)
#include "tst_form_json.moc"
