#include "flipbook/documents/newdocument.h"

#include "flipbook/documents/pagelayout.h"
#include "framework/document.h"
#include "framework/page.h"

#include <QtCore/QFileInfo>

namespace
{

const QString NameKey = QStringLiteral("object_name");

/// Names an object without the renaming of its frames that comes with it.
void nameObject(CBaseObject &object, const QString &name)
{
    object.CBaseObject::setOtherParams(NameKey, name);
}

} // namespace

NewDocument::NewDocument()
    : m_document(std::make_unique<Document>())
    , m_page(m_document->addPage(NewPageRect))
{
    m_document->setKeepsImagesInline(false);
}

NewDocument::~NewDocument() = default;

CBaseObject *NewDocument::add(OwnedObject object, const QString &path)
{
    CBaseObject *added = object.release();
    const QFileInfo info(path);
    nameObject(*added, info.isDir() ? info.fileName() : info.completeBaseName());
    m_page->addObject(added);
    return added;
}

std::unique_ptr<Document> NewDocument::finished()
{
    const QList<CBaseObject *> objects = m_page->objects();
    QVector<QSizeF> sizes;
    for (const CBaseObject *object : objects)
        sizes.append(object->getSize());
    const QVector<QRectF> places = arranged(sizes, NewPageRect);
    for (int i = 0; i < objects.size(); ++i) {
        if (places.at(i).size() != sizes.at(i))
            objects.at(i)->setSize(places.at(i).size(), false, false);
        objects.at(i)->setPos(places.at(i).topLeft(), false);
    }
    return std::move(m_document);
}
