#include "tests/flipbook/documentfixture.h"

#include "flipbook/object/animatedobject.h"
#include "tests/support/pictures.h"

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

DocumentFixture::DocumentFixture()
    : m_plugin(QStringLiteral(PLUGIN_FILE))
{
}

std::unique_ptr<Document> DocumentFixture::document(const QList<QColor> &colours) const
{
    // Frames enter through the host interface: as a frame folder.
    QTemporaryDir folder;
    QJsonArray list;
    for (int i = 0; i < colours.size(); ++i) {
        const QString name = QStringLiteral("%1.png").arg(i);
        Pictures::solid(4, 3, colours.at(i)).save(folder.filePath(name));
        list.append(QJsonObject{{QStringLiteral("filename"), name}});
    }
    writeBytes(folder.filePath(QStringLiteral("config.json")),
               QJsonDocument(QJsonObject{{QStringLiteral("ImageList"), list},
                                         {QStringLiteral("ShiftInterval"), 100}})
                   .toJson());
    auto document = std::make_unique<Document>();
    Page *page = document->addPage(QRectF(0, 0, 200, 100));
    CBaseObject *object = m_plugin.createObject(7).release();
    AnimatedObject(*object).loadPath(folder.path());
    object->setOtherParams(QStringLiteral("object_name"), QStringLiteral("film"));
    page->addObject(object);
    object->setPos(QPointF(10, 20), false);
    return document;
}

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(bytes);
}
