#pragma once

#include <QtCore/QCoreApplication>

#include <functional>

class FilmReader;
class MessageBar;
class QMainWindow;
class Session;
struct Failure;
struct OverBudget;

/// Reading on behalf of the user: with progress, with a question before more memory is taken than
/// the budget allows, and with a message when it fails. The document is changed afterwards, by
/// the caller.
class ImportWork
{
    Q_DECLARE_TR_FUNCTIONS(ImportWork)

public:
    ImportWork(Session &session, MessageBar &messages, QMainWindow &window);

    using Work = std::function<void(FilmReader &reader)>;

    /// Does @p work, a second time from its beginning if the user allows it more memory. False when
    /// it was cancelled, or failed, which is told.
    bool run(const Work &work);

    void tellFailure(const Failure &failure);

    /// How much memory may be taken without a question, in bytes.
    void setMemoryBudget(qint64 bytes) { m_budget = bytes; }

private:
    bool mayExceed(const OverBudget &excess);

    Session &m_session;
    MessageBar &m_messages;
    QMainWindow &m_window;
    qint64 m_budget;
};
