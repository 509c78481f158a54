#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"
#include "tests/support/releaser.h"

#include <QtCore/QBuffer>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

namespace
{

using Import = std::function<bool(Stage &)>;

} // namespace

Q_DECLARE_METATYPE(Import)

/// The host may end the object's life when an import tells it of the new size.
class TestFolderRelease : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itMayBeReleasedWhileItImports_data();
    void itMayBeReleasedWhileItImports();

private:
    QTemporaryDir m_folder;
};

void TestFolderRelease::itMayBeReleasedWhileItImports_data()
{
    const QString film = m_folder.filePath(QStringLiteral("film.gif"));
    GifBuilder(6, 5).add(0, 12).add(1, 12).write(film);
    QTest::addColumn<Import>("import");
    QTest::addColumn<int>("type");
    const QMap<QString, Import> imports{
        {QStringLiteral("a GIF"), [=](Stage &stage) { return stage->loadFromFile(film); }},
        {QStringLiteral("a GIF with a device"),
         [=](Stage &stage) {
             QBuffer device;
             return stage->loadFromFile(film, &device);
         }},
        {QStringLiteral("a picture"),
         [](Stage &stage) {
             const QImage picture = Pictures::solid(5, 3, Qt::red);
             return stage->loadFromImage(&picture);
         }},
    };
    for (auto it = imports.begin(); it != imports.end(); ++it) {
        QTest::newRow(qPrintable(it.key())) << it.value() << -1;
        QTest::newRow(qPrintable(it.key() + QStringLiteral(", a background"))) << it.value() << 1;
    }
}

void TestFolderRelease::itMayBeReleasedWhileItImports()
{
    QFETCH(Import, import);
    QFETCH(int, type);
    Stage stage(solidFrames({{10, 10}, {10, 10}}));
    stage.probe.animatedType() = type;
    const Releaser releaser(stage, 1);
    QVERIFY(import(stage));
    QVERIFY(stage.isReleased());
    QCOMPARE(stage.log.entries(), QStringList{QStringLiteral("changed 104")});
    QCOMPARE(stage.page->objects().size(), 0);
}

QTEST_MAIN(TestFolderRelease)
#include "tst_folder_release.moc"
