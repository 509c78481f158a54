#include "flipbook/document/documentarchive.h"
#include "flipbook/document/documentfile.h"
#include "flipbook/document/documentjson.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/flipbookrun.h"
#include "tests/flipbook/objectstate.h"

#include <QtTest/QTest>

/// Editing a document of which a picture is missing: what could still be found elsewhere is not
/// thrown away unasked.
class TestEditDamaged : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_path = m_fixture.path(QStringLiteral("damaged.flipbook"));
        const auto document = m_fixture.document({Qt::red, Qt::green});
        saveDocument(*document, m_path);
        const QByteArray json = documentJson(*document);
        QCOMPARE(document->imageStore().digests().size(), 2);
        const QString kept = document->imageStore().digests().first();
        DocumentArchive::write(m_path, json, {{kept, document->imageStore().png(kept)}});
    }

    void itIsRefused()
    {
        const QByteArray bytes = bytesOf(m_path);
        const FlipbookRun run =
            flipbook({QStringLiteral("edit"), m_path, QStringLiteral("--mirror")});
        QCOMPARE(run.status, 1);
        QVERIFY2(run.err.contains(QStringLiteral("is missing")), qPrintable(run.err));
        QVERIFY2(run.err.endsWith(QStringLiteral("flipbook: %1: the parts that cannot be read "
                                                 "would be lost; --force saves it without them\n")
                                      .arg(m_path)),
                 qPrintable(run.err));
        QCOMPARE(bytesOf(m_path), bytes);
    }

    void itIsDoneOnRequest()
    {
        const FlipbookRun run = flipbook({QStringLiteral("edit"), m_path,
                                          QStringLiteral("--mirror"), QStringLiteral("--force")});
        QCOMPARE(run.status, 0);
        const ObjectState state = objectIn(m_fixture.plugin(), m_path);
        QVERIFY(state.mirrored);
        QCOMPARE(state.frames.size(), 2);
        QCOMPARE(flipbook({QStringLiteral("info"), m_path}).err, QString());
    }

private:
    DocumentFixture m_fixture;
    QString m_path;
};

QTEST_MAIN(TestEditDamaged)
#include "tst_editdamaged.moc"
