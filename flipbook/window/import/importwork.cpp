#include "flipbook/window/import/importwork.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/window/import/filmreader.h"
#include "flipbook/window/messagebar.h"
#include "flipbook/window/progress.h"
#include "flipbook/window/session.h"

#include <QtCore/QFileInfo>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStatusBar>

#include <limits>
#include <new>

ImportWork::ImportWork(Session &session, MessageBar &messages, QMainWindow &window)
    : m_session(session)
    , m_messages(messages)
    , m_window(window)
    , m_budget(MemoryBudget::Default)
{
}

void ImportWork::tellFailure(const Failure &failure)
{
    m_messages.tell(MessageBar::Kind::Error,
                    QStringLiteral("%1: %2").arg(failure.subject, failure.reason));
}

bool ImportWork::mayExceed(const OverBudget &excess)
{
    QMessageBox question(QMessageBox::Question, tr("Large file"),
                         tr("%1 would need %2 of memory, which is more than the limit of %3.")
                             .arg(QFileInfo(excess.subject).fileName(),
                                  MemoryBudget::text(excess.neededBytes),
                                  MemoryBudget::text(m_budget)),
                         QMessageBox::Yes | QMessageBox::Cancel, &m_window);
    question.setInformativeText(tr("Read it anyway?"));
    question.button(QMessageBox::Yes)->setText(tr("Read"));
    question.setDefaultButton(QMessageBox::Cancel);
    return question.exec() == QMessageBox::Yes;
}

bool ImportWork::run(const Work &work)
{
    qint64 budget = m_budget;
    for (;;) {
        try {
            Progress progress(*m_window.statusBar());
            FilmReader reader(m_session.plugin(), progress, budget);
            work(reader);
            return true;
        } catch (const Cancelled &) {
            return false;
        } catch (const OverBudget &excess) {
            if (budget != m_budget || !mayExceed(excess))
                return false;
            budget = std::numeric_limits<qint64>::max();
        } catch (const Failure &failure) {
            tellFailure(failure);
            return false;
        } catch (const std::bad_alloc &) {
            m_messages.tell(MessageBar::Kind::Error, tr("There is not enough memory for that."));
            return false;
        }
    }
}
