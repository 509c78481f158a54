#include "flipbook/import/framenames.h"

#include "flipbook/object/objectprotocol.h"
#include "host/specialpropertyids.h"

#include <QtCore/QFileInfo>

FrameNames::FrameNames(const Plugin::Frames &present)
{
    for (const auto &frame : present)
        m_taken.insert(frame.first);
}

FrameNames::FrameNames(const QStringList &present)
    : m_taken(present.cbegin(), present.cend())
{
}

QString FrameNames::give(const QString &wanted)
{
    QString name = wanted;
    if (m_taken.contains(name)) {
        int &number = m_next[wanted];
        do {
            // The number of the frame that has the name itself is 1.
            ++number;
            name = QStringLiteral("%1 (%2)").arg(wanted, QString::number(number + 1));
        } while (m_taken.contains(name));
    }
    m_taken.insert(name);
    return name;
}

QStringList FrameNames::giveAll(Plugin::Frames &added)
{
    QStringList numbered;
    for (auto &frame : added) {
        const QString wanted = frame.first;
        frame.first = give(wanted);
        if (frame.first != wanted)
            numbered << frame.first;
    }
    return numbered;
}

QString FrameNames::ofFile(const QString &path)
{
    const QFileInfo file(path);
    const QString name = file.completeBaseName();
    return name.isEmpty() ? file.fileName() : name;
}

QString FrameNames::told(const QString &wanted, const QString &given)
{
    if (wanted == given)
        return QString();
    return QStringLiteral("the name '%1' is taken; the frame is called '%2'").arg(wanted, given);
}

void FrameNames::assign(CBaseObject &object, const QStringList &names)
{
    for (int i = 0; i < names.size(); ++i) {
        if (!names.at(i).isNull())
            ObjectProtocol::tell(object, SpecialPropertyId::FrameName, qint32(i), names.at(i));
    }
}
