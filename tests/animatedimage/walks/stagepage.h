#pragma once

#include "framework/page.h"
#include "tests/animatedimage/walks/hostears.h"

/// A page of a walk, which notes what objects ask of it before it does it.
class StagePage : public Page
{
public:
    StagePage(const QRectF &rect, Document *document, int number)
        : Page(rect, document)
        , m_number(number)
    {
    }

    qint64 queryObject(CGDRootObject *object, int code) override
    {
        HostEars &ears = HostEars::instance();
        ears.hear(QStringLiteral("page %1 was asked for layer %2 for object %3")
                      .arg(m_number)
                      .arg(code)
                      .arg(ears.serialOf(object)));
        const qint64 handle = Page::queryObject(object, code);
        m_layers.insert(handle, code);
        return handle;
    }

    void applyObject(int operation, qint64 handle, const QList<CGDRootObject *> &objects,
                     bool undoable, const QString &text, bool refresh) override
    {
        HostEars &ears = HostEars::instance();
        QStringList serials;
        for (const CGDRootObject *object : objects)
            serials.append(QString::number(ears.serialOf(object)));
        QString event = QStringLiteral("page %1 moved object %2 to layer %3")
                            .arg(QString::number(m_number), serials.join(QLatin1Char(',')),
                                 QString::number(m_layers.value(handle, -1)));
        if (operation != 0 || !undoable || !text.isEmpty() || !refresh)
            event += QStringLiteral(", otherwise than a user does");
        ears.hear(event);
        Page::applyObject(operation, handle, objects, undoable, text, refresh);
    }

private:
    int m_number;
    QHash<qint64, int> m_layers; ///< the code of each handle that was given out
};
