#include "tests/support/stage.h"

#include <QtCore/QDataStream>
#include <QtCore/QJsonObject>
#include <QtTest/QTest>

#include <functional>

namespace
{

/// A page that says when it is asked for its document.
class WatchedPage : public Page
{
public:
    explicit WatchedPage(Document *document)
        : Page(QRectF(0, 0, 800, 600), document)
    {
    }

    IGdDocument *document() const override
    {
        if (asked)
            asked();
        return Page::document();
    }

    std::function<void()> asked;
};

/// A document that looks at what is saved already when it is asked to save pictures.
class WatchedDocument : public Document
{
public:
    void jsonImageList(QJsonObject &json, QList<QImage> &images, const QString &key,
                       bool saving) override
    {
        hadFlag = json.contains(QLatin1String("IsGif"));
        hadInterval = json.contains(QLatin1String("ShiftInterval"));
        Document::jsonImageList(json, images, key, saving);
    }

    bool hadFlag = false;
    bool hadInterval = true;
};

} // namespace

/// When the object asks its host for what, while it is saved.
class TestFormHostCalls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theBaseIsInTheStreamBeforeTheDocumentIsAsked();
    void theBaseIsInTheJsonBeforeTheDocumentIsAsked();
    void picturesAreBetweenTheFlagAndTheInterval();
};

void TestFormHostCalls::theBaseIsInTheStreamBeforeTheDocumentIsAsked()
{
    Stage stage(solidFrames({{8, 6}}));
    WatchedPage page(&stage.document);
    page.addObject(stage.image);
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    QVector<bool> hadBase;
    page.asked = [&] { hadBase.append(!bytes.isEmpty()); };
    QVERIFY(stage->save(stream));
    page.asked = nullptr;
    QCOMPARE(hadBase, QVector<bool>{true});
}

void TestFormHostCalls::theBaseIsInTheJsonBeforeTheDocumentIsAsked()
{
    Stage stage(solidFrames({{8, 6}}));
    WatchedPage page(&stage.document);
    page.addObject(stage.image);
    QJsonObject json;
    QVector<bool> hadBase;
    page.asked = [&] { hadBase.append(json.contains(QLatin1String("ObjectId"))); };
    QVERIFY(stage->saveJson(json));
    page.asked = nullptr;
    QCOMPARE(hadBase, QVector<bool>{true});
}

void TestFormHostCalls::picturesAreBetweenTheFlagAndTheInterval()
{
    WatchedDocument document;
    Stage stage(solidFrames({{8, 6}}));
    WatchedPage page(&document);
    page.addObject(stage.image);
    QJsonObject json;
    QVERIFY(stage->saveJson(json));
    QVERIFY(document.hadFlag);
    QVERIFY(!document.hadInterval);
    stage.release();
}

QTEST_MAIN(TestFormHostCalls)
#include "tst_form_hostcalls.moc"
