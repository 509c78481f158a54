#include "tests/soak/randomuser.h"

#include "framework/framework.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>

#include <array>
#include <cmath>

namespace
{

void require(bool holds, const char *what)
{
    if (!holds)
        throw Violation(what);
}

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(),
            "a file could not be written");
}

bool isFinite(const QRectF &rect)
{
    return std::isfinite(rect.x()) && std::isfinite(rect.y()) && std::isfinite(rect.width()) &&
           std::isfinite(rect.height());
}

UndoStack &stack()
{
    return *Framework::instance().undoStack();
}

} // namespace

RandomUser::RandomUser(quint32 seed, const QDir &folder)
    : m_random(seed)
    , m_folder(folder)
    , m_page(m_document.addPage(QRectF(0, 0, 400, 300)))
    , m_saved(QCryptographicHash::Sha1)
{
    stack().clear();
    stack().setUndoLimit(MostCommands);
    writeFiles();
    for (int i = 0; i < Objects; ++i)
        fill(*added());
}

RandomUser::~RandomUser()
{
    Framework::instance().dropUndoCommands();
}

void RandomUser::writeFiles()
{
    write(m_folder.filePath(QStringLiteral("a.gif")),
          GifBuilder(12, 9).loop(2).add(0, 12).add(1, 5).add(2, 7).data());
    write(m_folder.filePath(QStringLiteral("b.gif")), GifBuilder(5, 16).add(3, 0).data());
    require(Pictures::solid(9, 7, Qt::cyan).save(m_folder.filePath(QStringLiteral("1.png"))),
            "a picture could not be written");
    require(m_folder.mkpath(QStringLiteral("frames")) &&
                m_folder.mkpath(QStringLiteral("costumes")),
            "a folder could not be made");
    for (const char *name : {"frames/x.png", "frames/y.png"})
        require(picture().save(m_folder.filePath(QLatin1String(name))),
                "a picture could not be written");
    write(m_folder.filePath(QStringLiteral("frames/config.json")),
          R"({"ImageList":[{"filename":"x.png"},{"filename":"y.png"}],"LoopCount":3})");
}

/// One of a limited number, so that a store of pictures does not grow.
QImage RandomUser::picture()
{
    const int kind = below(40);
    QImage picture(4 + kind % 8, 3 + kind % 5, QImage::Format_ARGB32);
    picture.fill(qRgba(kind * 6, 255 - kind * 6, 90, kind % 2 == 0 ? 255 : 120));
    picture.setPixel(0, 0, 0);
    return picture;
}

QString RandomUser::file()
{
    constexpr std::array<const char *, 4> names = {"a.gif", "b.gif", "frames", "none.gif"};
    return m_folder.filePath(QLatin1String(names.at(std::size_t(below(int(names.size()))))));
}

void RandomUser::fill(CAnimatedImage &image)
{
    image.loadFromFile(m_folder.filePath(QStringLiteral("a.gif")));
    image.setPos(QPointF(below(380), below(280)), false);
    image.playImage(byChance());
}

CAnimatedImage *RandomUser::added()
{
    auto *image = new CAnimatedImage(1, true, nullptr);
    m_page->addObject(image);
    AnimatedImageProbe(*image).refreshBelongDoc();
    return image;
}

/// A new object instead of @p image.
CAnimatedImage *RandomUser::replaced(CAnimatedImage *image)
{
    m_page->destroyObject(image);
    return added();
}

CAnimatedImage *RandomUser::someImage()
{
    const QList<CBaseObject *> all = m_page->objects();
    return dynamic_cast<CAnimatedImage *>(all.at(below(all.size())));
}

int RandomUser::frameCount() const
{
    return AnimatedImageProbe(*m_image).storedFrames().size();
}

RandomUser::Chance RandomUser::chosen()
{
    static const std::array<Chance, 19> chances = {{
        {16, "edit frames", &RandomUser::editFrames},
        {8, "insert a frame", &RandomUser::insertFrame},
        {3, "replace all frames", &RandomUser::replaceAll},
        {3, "change the type", &RandomUser::changeType},
        {5, "settings", &RandomUser::settings},
        {8, "place", &RandomUser::place},
        {8, "undo", &RandomUser::undo},
        {6, "redo", &RandomUser::redo},
        {6, "play", &RandomUser::play},
        {12, "tick", &RandomUser::tick},
        {2, "present", &RandomUser::present},
        {8, "look", &RandomUser::look},
        {4, "import", &RandomUser::import},
        {3, "save and load the stream form", &RandomUser::saveStream},
        {3, "save and load the JSON form", &RandomUser::saveJson},
        {2, "copy", &RandomUser::copy},
        {2, "delete", &RandomUser::remove},
        {1, "costumes", &RandomUser::exportCostumes},
        {0, "save and load the document", &RandomUser::saveDocumentFile},
    }};
    // Takes as long as hundreds of others.
    constexpr int documentEvery = 1000;
    if (m_steps % documentEvery == 0)
        return chances.back();
    int at = below(100);
    for (const Chance &chance : chances) {
        if (at < chance.weight)
            return chance;
        at -= chance.weight;
    }
    throw Violation("the chances are not 100 together");
}

void RandomUser::step()
{
    ++m_steps;
    const Chance chance = chosen();
    m_deed = chance.name;
    m_image = someImage();
    (this->*chance.deed)();
    // Commands may be dropped when the event loop is entered. Timers are not run.
    QCoreApplication::sendPostedEvents();

    require(m_page->objects().size() == Objects, "the page has another number of objects");
    require(stack().count() <= MostCommands && stack().index() <= stack().count(),
            "the undo stack is too long");
    require(!Framework::instance().isUndoMacroOpen(), "a macro is still open");
    if (m_image)
        check(*m_image);
    constexpr int allEvery = 200;
    if (m_steps % allEvery != 0)
        return;
    const QList<CBaseObject *> all = m_page->objects();
    for (CBaseObject *object : all)
        check(dynamic_cast<CAnimatedImage &>(*object));
}

void RandomUser::check(CAnimatedImage &image)
{
    AnimatedImageProbe probe(image);
    const int count = probe.storedFrames().size();
    require(count <= MostFrames, "there are too many frames");
    require(count == 0 || (probe.runningIndex() >= 0 && probe.runningIndex() < count),
            "the frame shown is not in the list");
    require(isFinite(image.boundingRect()) && isFinite(probe.rect()), "the place is not finite");
    require(image.scene() == m_page, "the object is not on its page");
    require(!probe.timer()->isActive() || probe.timer()->interval() > 0,
            "the timer would keep the event loop busy");
    for (const CAnimatedPortrait &frame : probe.storedFrames())
        require(frame.size.width() >= 0 && frame.size.height() >= 0, "a frame has no size");
}
