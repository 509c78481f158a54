#include "flipbook/base/reading.h"
#include "flipbook/document/documentfile.h"
#include "flipbook/object/plugin.h"
#include "framework/framework.h"
#include "host/specialpropertyids.h"
#include "tests/soak/randomuser.h"
#include "tests/support/request.h"

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtGui/QPainter>

#include <array>

namespace
{

constexpr qint32 normalType = 0;
constexpr qint32 backgroundType = 1;

template<typename... Values>
void get(CAnimatedImage *image, int id, const Values &...values)
{
    Request(Request::packed(values...)).get(image, id);
}

template<typename... Values>
void set(CAnimatedImage *image, int id, const Values &...values)
{
    Request(Request::packed(values...)).set(image, id);
}

} // namespace

void RandomUser::editFrames()
{
    using namespace SpecialPropertyId;
    const qint32 index = someIndex();
    switch (below(7)) {
    case 0:
        return set(m_image, DeleteFrame, index);
    case 1:
        return set(m_image, MoveFrame, index, qint32(someIndex()));
    case 2:
        return set(m_image, FrameName, index, QStringLiteral("name %1").arg(below(9)));
    case 3:
        return set(m_image, FrameImage, true, index, picture());
    case 4:
        return set(m_image, ShowFrameAt, qint32(qBound(0, index, qMax(0, frameCount() - 1))));
    case 5:
        return get(m_image, Thumbnails);
    default:
        return get(m_image, FrameImage, index);
    }
}

void RandomUser::insertFrame()
{
    using namespace SpecialPropertyId;
    const qint32 index = someIndex();
    if (frameCount() >= MostFrames)
        return set(m_image, DeleteFrame, qint32(0));
    switch (below(3)) {
    case 0:
        return get(m_image, InsertBlankFrame, index);
    case 1:
        return get(m_image, DuplicateFrame, index, qint32(someIndex()));
    default:
        return get(m_image, InsertImageFile, index, m_folder.filePath(QStringLiteral("1.png")));
    }
}

void RandomUser::replaceAll()
{
    get(m_image, SpecialPropertyId::ReplaceAllFrames, m_folder.filePath(QStringLiteral("1.png")));
}

void RandomUser::changeType()
{
    set(m_image, SpecialPropertyId::AnimatedType, byChance() ? normalType : backgroundType, true);
}

void RandomUser::settings()
{
    constexpr std::array<const char *, 3> ids = {"idImagePlay", "idShiftInterval", "idLoopCount"};
    const QLatin1String id(ids.at(std::size_t(below(int(ids.size())))));
    const QString value = id == QLatin1String("idShiftInterval") ? QString::number(below(500))
                          : byChance()                           ? QStringLiteral("true")
                                                                 : QStringLiteral("false");
    const QString json = QStringLiteral(R"({"settings":[{"id":"%1","value":"%2"}]})");
    m_image->SetSettingJson(json.arg(id, value), true, true);
    QString described;
    m_image->GetSettingJson(described);
}

void RandomUser::place()
{
    switch (below(5)) {
    case 0:
        return m_image->setSize(QSizeF(1 + below(60), 1 + below(60)), byChance(), true);
    case 1:
        return m_image->setPos(QPointF(below(380), below(280)), true);
    case 2:
        return m_image->setMirror(byChance(), true);
    case 3:
        return m_image->setFlip(byChance(), true);
    default:
        m_image->setOtherParams(QStringLiteral("object_name"),
                                QStringLiteral("object %1").arg(below(9)));
    }
}

void RandomUser::undo()
{
    Framework::instance().undoStack()->undo();
}

void RandomUser::redo()
{
    Framework::instance().undoStack()->redo();
}

void RandomUser::play()
{
    m_image->playImage(byChance());
    m_image->setLoopCount(below(4) - 1);
}

void RandomUser::tick()
{
    AnimatedImageProbe probe(*m_image);
    for (int ticks = 1 + below(8); ticks > 0; --ticks)
        probe.tick();
}

void RandomUser::present()
{
    m_document.enterAlternateMode();
    m_page->rendered(0.5);
    tick();
    m_image->setPos(m_image->getPos() + QPointF(3, -2), true);
    m_page->objectAt(QPointF(below(400), below(300)));
    m_page->rendered();
    m_document.leaveAlternateMode();
}

void RandomUser::look()
{
    if (below(10) == 0)
        m_page->rendered();
    QImage canvas(40, 30, QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::white);
    QPainter painter(&canvas);
    painter.scale(0.5 + below(4), 0.5 + below(4));
    m_image->paint(&painter, nullptr, nullptr);
    m_page->objectAt(QPointF(below(400), below(300)));
}

void RandomUser::import()
{
    m_image->loadFromFile(file());
    const QImage single = picture();
    if (frameCount() == 0)
        m_image->loadFromImage(&single);
}

QByteArray RandomUser::streamForm()
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    if (!m_image->save(stream))
        throw Violation("the stream form could not be saved");
    m_saved.addData(bytes);
    return bytes;
}

QJsonObject RandomUser::jsonForm()
{
    QJsonObject json;
    if (!m_image->saveJson(json))
        throw Violation("the JSON form could not be saved");
    m_saved.addData(QJsonDocument(json).toJson());
    return json;
}

void RandomUser::saveStream()
{
    const QByteArray saved = streamForm();
    m_image = replaced(m_image);
    QDataStream stream(saved);
    m_image->load(stream);
    // Loading stops an object that played: from then on nothing changes.
    const QByteArray again = streamForm();
    m_image = replaced(m_image);
    QDataStream secondStream(again);
    m_image->load(secondStream);
    if (streamForm() != again)
        throw Violation("a loaded object saves another stream form");
}

void RandomUser::saveJson()
{
    QJsonObject saved = jsonForm();
    m_image = replaced(m_image);
    m_image->loadJson(saved);
    QJsonObject again = jsonForm();
    QJsonObject expected = again;
    m_image = replaced(m_image);
    m_image->loadJson(again);
    if (jsonForm() != expected)
        throw Violation("a loaded object saves another JSON form");
}

void RandomUser::copy()
{
    CAnimatedImage *source = someImage();
    if (source == m_image)
        return;
    m_image = replaced(m_image);
    set(m_image, SpecialPropertyId::CopyFromObject,
        reinterpret_cast<qint64>(static_cast<CGDRootObject *>(source)));
}

void RandomUser::remove()
{
    m_image = replaced(m_image);
    fill(*m_image);
}

void RandomUser::exportCostumes()
{
    const QDir costumes(m_folder.filePath(QStringLiteral("costumes")));
    const QJsonArray described = m_image->generateCostumesCode(costumes.path() + QLatin1Char('/'));
    if (described.size() != frameCount())
        throw Violation("there is not a costume for each frame");
    m_saved.addData(QJsonDocument(described).toJson());
    const QStringList written = costumes.entryList(QDir::Files);
    for (const QString &name : written)
        QFile::remove(costumes.filePath(name));
}

void RandomUser::saveDocumentFile()
{
    static const Plugin plugin(QStringLiteral(PLUGIN_FILE));
    const QString path = m_folder.filePath(QStringLiteral("page.flipbook"));
    saveDocument(m_document, path);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || !m_saved.addData(&file))
        throw Violation("the saved document could not be read");
    Reading reading(qint64(1) << 30, false);
    const LoadedDocument loaded = loadDocument(plugin, path, reading);
    if (loaded.document->pages().constFirst()->objects().size() != Objects)
        throw Violation("the loaded document has another number of objects");
    if (!loaded.warnings.isEmpty())
        throw Violation("the loaded document lacks something");
}
