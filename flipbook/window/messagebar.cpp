#include "flipbook/window/messagebar.h"

#include "flipbook/window/icons/icons.h"

#include <KMessageWidget>
#include <QtGui/QAccessible>
#include <QtWidgets/QAction>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>

namespace
{

KMessageWidget::MessageType typeOf(MessageBar::Kind kind)
{
    switch (kind) {
    case MessageBar::Kind::Success:
        return KMessageWidget::Positive;
    case MessageBar::Kind::Warning:
        return KMessageWidget::Warning;
    case MessageBar::Kind::Error:
        return KMessageWidget::Error;
    default:
        return KMessageWidget::Information;
    }
}

bool isPassing(MessageBar::Kind kind)
{
    return kind == MessageBar::Kind::Information || kind == MessageBar::Kind::Success;
}

} // namespace

MessageBar::MessageBar(QWidget *parent)
    : QWidget(parent)
    , m_layout(new QVBoxLayout(this))
{
    setObjectName(QStringLiteral("messageBar"));
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
}

void MessageBar::tell(Kind kind, const QString &text, const QVector<Choice> &choices)
{
    if (isPassing(kind)) {
        const QVector<KMessageWidget *> passing = m_passing;
        for (KMessageWidget *line : passing)
            remove(line);
    }
    if (texts().contains(text))
        return;
    if (m_lines.size() == MaxLines)
        remove(m_lines.first());

    // Names of files are no rich text.
    auto *line = new KMessageWidget(text.toHtmlEscaped(), this);
    line->setProperty("plainText", text);
    line->setMessageType(typeOf(kind));
    line->setWordWrap(true);
    line->setAccessibleName(text);
    // The only button so far closes the line.
    if (const auto *button = line->findChild<QToolButton *>())
        button->defaultAction()->setIcon(Icons::icon(QStringLiteral("window-close")));
    for (const Choice &choice : choices) {
        auto *action = new QAction(choice.text, line);
        connect(action, &QAction::triggered, this, [this, line, act = choice.act] {
            remove(line);
            act();
        });
        line->addAction(action);
    }
    connect(line, &KMessageWidget::hideAnimationFinished, this, [this, line] { remove(line); });
    m_lines.append(line);
    if (isPassing(kind))
        m_passing.append(line);
    m_layout->addWidget(line);
    line->show();
    QAccessibleEvent announcement(line, QAccessible::Alert);
    QAccessible::updateAccessibility(&announcement);
}

void MessageBar::remove(KMessageWidget *line)
{
    if (!m_lines.removeOne(line))
        return;
    m_passing.removeOne(line);
    m_layout->removeWidget(line);
    line->hide();
    line->deleteLater();
}

void MessageBar::clear()
{
    while (!m_lines.isEmpty())
        remove(m_lines.first());
}

QStringList MessageBar::texts() const
{
    QStringList texts;
    for (const KMessageWidget *line : m_lines)
        texts << line->property("plainText").toString();
    return texts;
}
