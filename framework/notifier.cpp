#include "framework/notifier.h"

void Notifier::post(int id, int first, const QString &text, int last)
{
    Q_EMIT posted(id, first, text, last);
}

void Notifier::notify(int code, int first, int second, int third)
{
    Q_EMIT notified(code, first, second, third);
}
