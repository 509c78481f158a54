#include "framework/document.h"
#include "framework/framework.h"
#include "framework/page.h"

#include <QtTest/QTest>

namespace
{

const QRectF paper(0, 0, 210, 297);

int historyLength()
{
    return Framework::instance().undoStack()->count();
}

} // namespace

/// Pages that an undo command takes out of their document, and puts back.
class TestFrameworkPageTaking : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void aTakenPageHasNoDocument();
    void aPageComesBackToItsPlace();
    void anIndexOutsideCountsAsTheNearestEnd();
    void onlyPagesOfTheDocumentAreTaken();
    void aTakenPageGoesWithoutTheHistory();
    void aPageThatCameBackTakesTheHistoryAlong();

private:
    std::unique_ptr<Document> m_document;
    Page *m_first = nullptr;
    Page *m_second = nullptr;
    Page *m_third = nullptr;
};

void TestFrameworkPageTaking::init()
{
    m_document = std::make_unique<Document>();
    m_first = m_document->addPage(paper);
    m_second = m_document->addPage(paper);
    m_third = m_document->addPage(paper);
}

void TestFrameworkPageTaking::cleanup()
{
    m_document.reset();
    Framework::instance().dropUndoCommands();
}

void TestFrameworkPageTaking::aTakenPageHasNoDocument()
{
    const std::unique_ptr<Page> taken = m_document->takePage(m_second);
    QCOMPARE(taken.get(), m_second);
    QVERIFY(!taken->document());
    QCOMPARE(m_document->pages(), (QList<Page *>{m_first, m_third}));
}

void TestFrameworkPageTaking::aPageComesBackToItsPlace()
{
    m_document->insertPage(1, m_document->takePage(m_second));
    QCOMPARE(m_document->pages(), (QList<Page *>{m_first, m_second, m_third}));
    QCOMPARE(m_second->document(), m_document.get());
}

void TestFrameworkPageTaking::anIndexOutsideCountsAsTheNearestEnd()
{
    m_document->insertPage(-1, m_document->takePage(m_second));
    QCOMPARE(m_document->pages(), (QList<Page *>{m_second, m_first, m_third}));
    m_document->insertPage(3, m_document->takePage(m_second));
    QCOMPARE(m_document->pages(), (QList<Page *>{m_first, m_third, m_second}));
}

void TestFrameworkPageTaking::onlyPagesOfTheDocumentAreTaken()
{
    Document other;
    QVERIFY(!other.takePage(m_first));
    QCOMPARE(m_first->document(), m_document.get());
    other.insertPage(0, nullptr);
    QVERIFY(other.pages().isEmpty());
}

void TestFrameworkPageTaking::aTakenPageGoesWithoutTheHistory()
{
    Framework::instance().undoStack()->push(new QUndoCommand(QStringLiteral("a change")));
    std::unique_ptr<Page> taken = m_document->takePage(m_second);
    taken.reset();
    QCOMPARE(historyLength(), 1);
}

void TestFrameworkPageTaking::aPageThatCameBackTakesTheHistoryAlong()
{
    Framework::instance().undoStack()->push(new QUndoCommand(QStringLiteral("a change")));
    m_document->insertPage(1, m_document->takePage(m_second));
    m_document->removePage(m_second);
    QCOMPARE(historyLength(), 0);
}

QTEST_MAIN(TestFrameworkPageTaking)
#include "tst_framework_pagetaking.moc"
