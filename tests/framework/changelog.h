#pragma once

#include "framework/framework.h"

#include <QtCore/QObject>
#include <QtCore/QStringList>

#include <functional>

/// Writes down what objects say of themselves, one text each: "104:".
class ChangeLog : public QObject
{
public:
    ChangeLog()
    {
        connect(Framework::instance().notifier(), &Notifier::propertyChanged, this,
                [this](CBaseObject *object, int id, const QString &value) {
                    entries.append(QStringLiteral("%1:%2").arg(QString::number(id), value));
                    if (whenHeard)
                        whenHeard(object);
                });
    }

    QStringList entries;
    std::function<void(CBaseObject *)> whenHeard;
};
