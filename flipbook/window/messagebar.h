#pragma once

#include <QtCore/QVector>
#include <QtWidgets/QWidget>

#include <functional>

class KMessageWidget;
class QVBoxLayout;

/// The lines above the page that tell what happened, with buttons where there is a choice. Errors
/// and warnings stay until they are closed; of other messages only the last one is shown.
class MessageBar : public QWidget
{
    Q_OBJECT

public:
    enum class Kind { Information, Success, Warning, Error };

    /// A button of a message, which closes it.
    struct Choice {
        QString text;
        std::function<void()> act;
    };

    explicit MessageBar(QWidget *parent = nullptr);

    /// The oldest line goes when there would be more than MaxLines. The same line is not shown
    /// twice.
    void tell(Kind kind, const QString &text, const QVector<Choice> &choices = {});
    /// Closes what only concerns the document before.
    void clear();

    /// What is shown, from top to bottom.
    QStringList texts() const;

    static constexpr int MaxLines = 4;

private:
    void remove(KMessageWidget *line);

    QVBoxLayout *m_layout;
    QVector<KMessageWidget *> m_lines;
    QVector<KMessageWidget *> m_passing;
};
