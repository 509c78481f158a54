#include "flipbook/base/failure.h"
#include "flipbook/base/filehandle.h"
#include "flipbook/base/reading.h"
#include "flipbook/document/documentarchive.h"
#include "flipbook/document/documentfile.h"
#include "flipbook/document/openedfile.h"
#include "flipbook/import/mediaimport.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/filmbuilder.h"
#include "tests/flipbook/flipbookrun.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"

#include <QtTest/QTest>

#include <atomic>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace
{

constexpr auto svg = R"(<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9">)"
                     R"(<image href="secret.png" width="9" height="9"/></svg>)";

/// Exchanges two files for each other, again and again, while it lives.
class Exchanger
{
public:
    Exchanger(const QString &one, const QString &other)
        : m_one(one.toUtf8())
        , m_other(other.toUtf8())
        , m_thread([this] { run(); })
    {
    }
    ~Exchanger()
    {
        m_ended = true;
        m_thread.join();
    }

private:
    Q_DISABLE_COPY(Exchanger)

    void run()
    {
        while (!m_ended)
            ::renameat2(AT_FDCWD, m_one.constData(), AT_FDCWD, m_other.constData(),
                        RENAME_EXCHANGE);
    }

    const QByteArray m_one;
    const QByteArray m_other;
    std::atomic<bool> m_ended{false};
    std::thread m_thread;
};

/// Cuts a file, makes it whole and lets it grow, again and again, while it lives.
class Resizer
{
public:
    explicit Resizer(const QString &path)
        : m_file(::open(path.toUtf8().constData(), O_WRONLY | O_CLOEXEC))
        , m_content(bytesOf(path))
        , m_thread([this] { run(); })
    {
    }
    ~Resizer()
    {
        m_ended = true;
        m_thread.join();
    }

private:
    Q_DISABLE_COPY(Resizer)

    void run()
    {
        const QByteArray more(1000, '\xff');
        for (int i = 0; !m_ended; ++i) {
            const bool isDone =
                ::ftruncate(m_file.get(), m_content.size() * (i % 7) / 7) == 0 &&
                ::pwrite(m_file.get(), m_content.constData(), std::size_t(m_content.size()), 0) >
                    0 &&
                (i % 2 == 0 || ::pwrite(m_file.get(), more.constData(), std::size_t(more.size()),
                                        m_content.size()) > 0);
            if (!isDone)
                return;
        }
    }

    const FileHandle m_file;
    const QByteArray m_content;
    std::atomic<bool> m_ended{false};
    std::thread m_thread;
};

/// How often a file is imported while it changes: what IMPORT_COUNT says, or @p usual.
int importCount(int usual)
{
    const int count = qEnvironmentVariableIntValue("IMPORT_COUNT");
    return count > 0 ? count : usual;
}

} // namespace

/// Files that were not named are neither read nor overwritten, even if the named ones refer to
/// them.
class TestForeignFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void picturesThatMayReferToFilesAreNotRead_data();
    void picturesThatMayReferToFilesAreNotRead();
    void suchAPictureInAFolderIsAnEmptyFrame();
    void aPipeBehindAMissingNameIsNotWaitedFor();
    void filesOutsideAreReadOnRequestOnly();
    void outputsNeverReplaceWhatWasRead_data();
    void outputsNeverReplaceWhatWasRead();
    void aFileThatIsExchangedIsReadAsOneOfTheTwo_data();
    void aFileThatIsExchangedIsReadAsOneOfTheTwo();
    void aFileWhoseSizeChangesIsReadOrRefused_data();
    void aFileWhoseSizeChangesIsReadOrRefused();

private:
    QString path(const QString &name) const { return m_fixture->path(name); }
    QString folderOf(const QByteArray &picture) const;

    std::unique_ptr<DocumentFixture> m_fixture;
};

void TestForeignFiles::init()
{
    m_fixture = std::make_unique<DocumentFixture>();
    QVERIFY(Pictures::solid(4, 3, Qt::red).save(path(QStringLiteral("red.png"))));
}

/// A frame folder that lists red.png and @p picture.
QString TestForeignFiles::folderOf(const QByteArray &picture) const
{
    const QString folder = path(QStringLiteral("folder"));
    QDir().mkdir(folder);
    Pictures::solid(4, 3, Qt::red).save(folder + QStringLiteral("/red.png"));
    writeBytes(folder + QStringLiteral("/config.json"),
               R"({"ImageList": [{"filename": "red.png"}, {"filename": ")" + picture + R"("}]})");
    return folder;
}

void TestForeignFiles::picturesThatMayReferToFilesAreNotRead_data()
{
    QTest::addColumn<QString>("arguments");
    for (const char *arguments :
         {"info sly.png", "sheet sly.png -o out.png", "play sly.png",
          "new n.flipbook --add sly.png", "frames sly.png -o out", "sprite sly.png -o out.sprite3",
          "edit doc.flipbook --insert 1=sly.png", "edit doc.flipbook --replace 1=sly.png",
          "edit doc.flipbook --replace-all sly.png"})
        QTest::newRow(arguments) << QString::fromLatin1(arguments);
}

void TestForeignFiles::picturesThatMayReferToFilesAreNotRead()
{
    QFETCH(QString, arguments);
    writeBytes(path(QStringLiteral("sly.png")), svg);
    // A reader waits forever.
    QCOMPARE(::mkfifo(qPrintable(path(QStringLiteral("secret.png"))), 0600), 0);
    saveDocument(*m_fixture->document({Qt::red}), path(QStringLiteral("doc.flipbook")));
    const FlipbookRun run = flipbookIn(path(QString()), arguments.split(QLatin1Char(' ')));
    QCOMPARE(run.status, 1);
    QVERIFY2(run.err.endsWith(QStringLiteral("sly.png: not a picture that can be read; those are "
                                             "PNG, JPEG, GIF, BMP, PBM, PGM, PPM and WebP\n")),
             qPrintable(run.err));
}

void TestForeignFiles::suchAPictureInAFolderIsAnEmptyFrame()
{
    const QString folder = folderOf("sly.png");
    writeBytes(folder + QStringLiteral("/sly.png"), svg);
    QCOMPARE(::mkfifo(qPrintable(folder + QStringLiteral("/secret.png")), 0600), 0);
    const FlipbookRun run = flipbook({QStringLiteral("info"), folder});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.err,
             QStringLiteral("flipbook: %1: warning: config.json: \"filename\" of element 2, "
                            "'sly.png', is not a picture that can be read; its frame is empty\n")
                 .arg(folder));
}

void TestForeignFiles::aPipeBehindAMissingNameIsNotWaitedFor()
{
    // Qt continues to look for names with the endings of pictures.
    const QString folder = folderOf("bomb");
    QCOMPARE(::mkfifo(qPrintable(folder + QStringLiteral("/bomb.png")), 0600), 0);
    const FlipbookRun run = flipbook({QStringLiteral("info"), folder});
    QCOMPARE(run.status, 0);
    QVERIFY2(run.err.contains(QStringLiteral("'bomb', not found; its frame is empty")),
             qPrintable(run.err));
}

void TestForeignFiles::filesOutsideAreReadOnRequestOnly()
{
    const QString folder = folderOf("../red.png");
    const FlipbookRun refused = flipbook({QStringLiteral("info"), folder});
    QCOMPARE(refused.status, 1);
    QCOMPARE(refused.err, QStringLiteral("flipbook: %1/config.json: \"filename\" of element 2, "
                                         "'../red.png', leads out of the folder; --allow-outside "
                                         "reads it\n")
                              .arg(folder));
    const FlipbookRun allowed =
        flipbook({QStringLiteral("info"), folder, QStringLiteral("--allow-outside")});
    QCOMPARE(allowed.err, QString());
    QCOMPARE(allowed.status, 0);
}

void TestForeignFiles::outputsNeverReplaceWhatWasRead_data()
{
    QTest::addColumn<QString>("arguments"); // OUT stands for the output, without its ending
    QTest::addColumn<QString>("input");     // the file that it leads to
    const auto row = [](const char *arguments, const char *input) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments) << QString::fromLatin1(input);
    };
    row("sheet folder -o OUT.png", "folder/a.gif");
    row("sprite folder -o OUT.sprite3", "folder/a.gif");
    row("project folder -o OUT.sb3", "folder/a.gif");
    row("new OUT.flipbook --force --add folder", "folder/a.gif");
    row("new OUT.flipbook --force --add red.png", "red.png");
    row("sheet ref.flipbook -o OUT.png", "film.gif");
    row("render ref.flipbook -o OUT.png", "film.gif");
    row("sprite ref.flipbook -o OUT.sprite3", "film.gif");
    row("project ref.flipbook -o OUT.sb3", "film.gif");
}

void TestForeignFiles::outputsNeverReplaceWhatWasRead()
{
    QFETCH(QString, arguments);
    QFETCH(QString, input);
    GifBuilder(4, 4).add(0, 10).write(path(QStringLiteral("film.gif")));
    GifBuilder(4, 4).add(0, 10).write(folderOf("a.gif") + QStringLiteral("/a.gif"));
    DocumentArchive::write(path(QStringLiteral("ref.flipbook")),
                           R"({"format": "flipbook document", "version": 1, "pages": [{
                               "rect": [0, 0, 9, 9], "objects": [{"kind": "animated image",
                               "layer": "normal", "state":
                               {"IsGif": true, "GifFileName": "film.gif"}}]}]})",
                           {});
    const QByteArray before = bytesOf(path(input));
    const QString ending =
        arguments.section(QStringLiteral("OUT"), 1).section(QLatin1Char(' '), 0, 0);
    const QString link = path(QStringLiteral("link") + ending);
    const QString hardLink = path(QStringLiteral("hard") + ending);
    QVERIFY(QFile::link(path(input), link));
    QCOMPARE(::link(qPrintable(path(input)), qPrintable(hardLink)), 0);
    for (const char *name : {"link", "hard"}) {
        QStringList words = arguments.split(QLatin1Char(' '));
        words.replaceInStrings(QStringLiteral("OUT"), QLatin1String(name));
        const FlipbookRun run = flipbookIn(path(QString()), words);
        QCOMPARE(run.err, QStringLiteral("flipbook: %1%2: is an input; it is not overwritten\n")
                              .arg(QLatin1String(name), ending));
        QCOMPARE(run.status, 1);
    }
    QCOMPARE(bytesOf(path(input)), before);
    QCOMPARE(bytesOf(link), before);
    QCOMPARE(bytesOf(hardLink), before);
}

void TestForeignFiles::aFileThatIsExchangedIsReadAsOneOfTheTwo_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("a GIF") << QStringLiteral("film.gif");
    QTest::newRow("a picture of a folder") << QStringLiteral("folder/a.gif");
}

void TestForeignFiles::aFileThatIsExchangedIsReadAsOneOfTheTwo()
{
    QFETCH(QString, name);
    // One film fits, the other does not: what is imported must be what was judged.
    constexpr qint64 budget = qint64(1) << 20;
    folderOf("a.gif");
    GifBuilder(4, 4).add(0, 10).write(path(name));
    GifBuilder large(1000, 1000);
    large.add({QRect(0, 0, 1, 1), 0});
    large.write(path(QStringLiteral("other.gif")));
    const QString opened = path(name.section(QLatin1Char('/'), 0, 0));
    int imported = 0;
    int refused = 0;
    const Exchanger exchanger(path(name), path(QStringLiteral("other.gif")));
    for (int i = 0; i < 20000 && (i < importCount(1000) || imported == 0 || refused == 0); ++i) {
        try {
            Reading reading(budget, false);
            const ImportedMedia media = importMedia(m_fixture->plugin(), opened, reading);
            const Plugin::Frames frames = m_fixture->plugin().frames(*media.object);
            QCOMPARE(frames.constLast().second.size(), QSize(4, 4));
            ++imported;
        } catch (const Failure &) {
            ++refused;
        }
    }
    QVERIFY(imported > 0 && refused > 0);
}

void TestForeignFiles::aFileWhoseSizeChangesIsReadOrRefused_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name :
         {"film.gif", "film.webp", "film.png", "picture.png", "doc.flipbook", "folder/red.png"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TestForeignFiles::aFileWhoseSizeChangesIsReadOrRefused()
{
    QFETCH(QString, name);
    const FilmFrame frame{Pictures::solid(40, 30, Qt::red), {0, 0}};
    folderOf("red.png");
    GifBuilder(40, 30).add(0, 10).add(1, 10).write(path(QStringLiteral("film.gif")));
    writeBytes(path(QStringLiteral("film.webp")), webpFilm(QSize(40, 30), 0, {frame, frame}));
    writeBytes(path(QStringLiteral("film.png")),
               ApngBuilder(QSize(40, 30), 0).add(frame).add(frame).data());
    QVERIFY(frame.picture.save(path(QStringLiteral("picture.png"))));
    saveDocument(*m_fixture->document({Qt::red, Qt::blue}), path(QStringLiteral("doc.flipbook")),
                 MemoryAccount());
    const QString opened = path(name.section(QLatin1Char('/'), 0, 0));
    const QSize size = name.startsWith(QLatin1String("fi")) || name == QLatin1String("picture.png")
                           ? QSize(40, 30)
                           : QSize(4, 3);
    const Resizer resizer(path(name));
    for (int i = 0; i < importCount(300); ++i) {
        try {
            Reading reading(qint64(16) << 20, false);
            const OpenedFile file = openFile(m_fixture->plugin(), opened, reading);
            const QList<CBaseObject *> objects = file.objects();
            for (CBaseObject *object : objects) {
                const Plugin::Frames frames = m_fixture->plugin().frames(*object);
                for (const auto &shown : frames)
                    QVERIFY(shown.second.isNull() || shown.second.size() == size);
            }
        } catch (const Failure &failure) {
            QVERIFY(!failure.reason.isEmpty());
        }
    }
}

QTEST_MAIN(TestForeignFiles)
#include "tst_foreignfiles.moc"
