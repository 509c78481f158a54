#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QMap>
#include <QtCore/QRandomGenerator>
#include <QtTest/QTest>

// The fuzz targets, each under its own name.
extern "C" {
int fuzz_apng(const uint8_t *data, size_t size);
int fuzz_document(const uint8_t *data, size_t size);
int fuzz_folder(const uint8_t *data, size_t size);
int fuzz_gif(const uint8_t *data, size_t size);
int fuzz_host(const uint8_t *data, size_t size);
int fuzz_json(const uint8_t *data, size_t size);
int fuzz_requests(const uint8_t *data, size_t size);
int fuzz_sheet(const uint8_t *data, size_t size);
int fuzz_stream(const uint8_t *data, size_t size);
int fuzz_webp(const uint8_t *data, size_t size);
}

namespace
{

using Target = int (*)(const uint8_t *, size_t);

const QMap<QString, Target> &targets()
{
    static const QMap<QString, Target> all = {
        {QStringLiteral("fuzz_apng"), fuzz_apng},
        {QStringLiteral("fuzz_document"), fuzz_document},
        {QStringLiteral("fuzz_folder"), fuzz_folder},
        {QStringLiteral("fuzz_gif"), fuzz_gif},
        {QStringLiteral("fuzz_host"), fuzz_host},
        {QStringLiteral("fuzz_json"), fuzz_json},
        {QStringLiteral("fuzz_requests"), fuzz_requests},
        {QStringLiteral("fuzz_sheet"), fuzz_sheet},
        {QStringLiteral("fuzz_stream"), fuzz_stream},
        {QStringLiteral("fuzz_webp"), fuzz_webp},
    };
    return all;
}

int run(Target target, const QByteArray &input)
{
    return target(reinterpret_cast<const uint8_t *>(input.constData()), size_t(input.size()));
}

/// The libraries complain of damaged pictures, and are right.
class Silence
{
public:
    Silence()
        : m_before(
              qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {}))
    {
    }
    ~Silence() { qInstallMessageHandler(m_before); }
    Q_DISABLE_COPY(Silence)

private:
    const QtMessageHandler m_before;
};

} // namespace

/// Each fuzz target, without the fuzzer: on what was found once, on inputs that reach
/// different code, and on a few bytes of chance.
class TestFuzzFindings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatWasFoundOnceEndsWell_data();
    void whatWasFoundOnceEndsWell();
    void theCorpusEndsWell_data();
    void theCorpusEndsWell();
    void anyBytesEndWell_data();
    void anyBytesEndWell();
};

void TestFuzzFindings::whatWasFoundOnceEndsWell_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("path");
    const QDir findings(QStringLiteral(FINDINGS_FOLDER));
    const QStringList names = findings.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &target : names) {
        const QDir folder(findings.filePath(target));
        const QStringList files = folder.entryList(QDir::Files);
        for (const QString &name : files)
            QTest::newRow(qPrintable(target + QLatin1Char('/') + name))
                << target << folder.filePath(name);
    }
}

void TestFuzzFindings::whatWasFoundOnceEndsWell()
{
    QFETCH(QString, target);
    QFETCH(QString, path);
    QVERIFY2(targets().contains(target), "no fuzz target has the name of this folder");
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const Silence silence;
    QCOMPARE(run(targets().value(target), file.readAll()), 0);
}

void TestFuzzFindings::theCorpusEndsWell_data()
{
    QTest::addColumn<QString>("target");
    const QDir corpus(QStringLiteral(CORPUS_FOLDER));
    const QStringList names = corpus.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    QVERIFY(!names.isEmpty());
    for (const QString &target : names)
        QTest::newRow(qPrintable(target)) << target;
}

void TestFuzzFindings::theCorpusEndsWell()
{
    QFETCH(QString, target);
    QVERIFY2(targets().contains(target), "no fuzz target has the name of this folder");
    const QDir folder(QDir(QStringLiteral(CORPUS_FOLDER)).filePath(target));
    const QStringList names = folder.entryList(QDir::Files);
    QVERIFY(!names.isEmpty());
    const Silence silence;
    for (const QString &name : names) {
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(run(targets().value(target), file.readAll()), 0);
    }
}

void TestFuzzFindings::anyBytesEndWell_data()
{
    QTest::addColumn<QString>("target");
    for (auto it = targets().cbegin(); it != targets().cend(); ++it)
        QTest::newRow(qPrintable(it.key())) << it.key();
}

void TestFuzzFindings::anyBytesEndWell()
{
    QFETCH(QString, target);
    const Silence silence;
    QRandomGenerator random(1);
    for (int length = 0; length < 200; ++length) {
        QByteArray input(length, '\0');
        for (char &byte : input)
            byte = char(random.generate() & 0xffU);
        QCOMPARE(run(targets().value(target), input), 0);
    }
}

QTEST_MAIN(TestFuzzFindings)
#include "tst_fuzz_findings.moc"
