#include "animatedimage/protocol/entrypoints.h"
#include "animatedimage/protocol/undocommands.h"
#include "framework/framework.h"
#include "fuzz/fuzzing.h"
#include "host/attributeids.h"
#include "host/specialpropertyids.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

#include <QtCore/QBuffer>
#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtGui/QPainter>

#include <array>

namespace
{

/// What the host does next, read from the bytes of the fuzzer. After the end all is 0.
class Script
{
public:
    explicit Script(const QByteArray &bytes)
        : m_bytes(bytes)
    {
    }

    bool isAtEnd() const { return m_at >= m_bytes.size(); }
    int byte() { return isAtEnd() ? 0 : static_cast<uint8_t>(m_bytes.at(m_at++)); }
    bool flag() { return byte() % 2 == 1; }
    /// Mostly the index of a frame or the like; now and then any number.
    int number()
    {
        const int small = byte() - 8;
        return small == 127 ? int(uint32_t(byte()) << 24U | uint32_t(byte())) : small;
    }
    QByteArray text()
    {
        const int length = qMin(byte(), m_bytes.size() - m_at);
        const QByteArray taken = m_bytes.mid(m_at, length);
        m_at += length;
        return taken;
    }

private:
    const QByteArray m_bytes;
    int m_at = 0;
};

/// A folder with a picture and a film, made once.
QString filesFolder()
{
    static const QString folder = [] {
        const QString path = Fuzzing::folder().filePath(QStringLiteral("host"));
        QDir().mkpath(path);
        Fuzzing::require(solidFrames({{3, 2}}).constFirst().save(path + QStringLiteral("/1.png")),
                         "the picture could not be written");
        QFile film(path + QStringLiteral("/2.gif"));
        const QByteArray bytes = GifBuilder(3, 2).loop(3).add(0, 12).add(1, 5).data();
        Fuzzing::require(film.open(QIODevice::WriteOnly) && film.write(bytes) == bytes.size(),
                         "the film could not be written");
        return path + QLatin1Char('/');
    }();
    return folder;
}

/// Of the picture, the film or nothing.
QString filePath(Script &script)
{
    const std::array<QString, 3> names = {QStringLiteral("1.png"), QStringLiteral("2.gif"),
                                          QStringLiteral("none.png")};
    return filesFolder() + names.at(std::size_t(script.byte()) % names.size());
}

/// A host with two objects on a page, one of which does what the script says.
class Host
{
public:
    explicit Host(Script &script)
        : m_script(script)
        , m_stage(solidFrames({{4, 3}, {5, 6}, {1, 1}}))
        , m_other(new CAnimatedImage(2, true, nullptr))
    {
        m_stage.page->addObject(m_other);
        m_other->loadFromFile(filesFolder() + QStringLiteral("2.gif"));
    }
    ~Host() { Framework::instance().dropUndoCommands(); }
    Q_DISABLE_COPY(Host)

    bool isOver() const { return m_stage.isReleased() || m_other.isNull(); }
    void act()
    {
        constexpr std::array<void (Host::*)(), 17> deeds = {
            &Host::request,  &Host::copy,      &Host::insertFile, &Host::attribute, &Host::tick,
            &Host::undo,     &Host::settings,  &Host::size,       &Host::place,     &Host::look,
            &Host::mode,     &Host::playback,  &Host::regions,    &Host::stream,    &Host::json,
            &Host::costumes, &Host::thumbnails};
        // The inputs that are kept mean what they meant before there were further deeds.
        constexpr int firstFurther = 250;
        m_image = m_script.flag() ? m_other.data() : m_stage.image;
        const int chosen = m_script.byte();
        if (chosen >= firstFurther)
            return further(chosen - firstFurther);
        (this->*deeds.at(std::size_t(chosen) % deeds.size()))();
    }

private:
    void further(int number)
    {
        constexpr std::array<void (Host::*)(), 3> deeds = {&Host::load, &Host::change,
                                                           &Host::callByName};
        (this->*deeds.at(std::size_t(number) % deeds.size()))();
    }
    void request()
    {
        using namespace SpecialPropertyId;
        constexpr int count = RunningFrameName - ShowNextFrame + 1;
        const int id = ShowNextFrame + m_script.byte() % count;
        const bool isRaw = m_script.byte() % 8 == 0;
        const bool set = m_script.flag();
        Request request(isRaw ? m_script.text() : usual(id, set));
        if (set)
            request.set(m_image, id, m_script.flag());
        else
            request.get(m_image, id);
    }
    /// What a host sends with a request.
    QByteArray usual(int id, bool sets)
    {
        using namespace SpecialPropertyId;
        const qint32 index = m_script.number();
        switch (id) {
        case FrameName:
            return Request::packed(index, QString::fromLatin1(m_script.text()));
        case ShowFrameNamed:
            return Request::packed(QString::fromLatin1(m_script.text()));
        case FrameImage:
            return sets ? Request::packed(m_script.flag(), index, picture())
                        : Request::packed(index);
        case ReplaceAllFrames:
            return Request::packed(filePath(m_script));
        case InsertImageFile:
            return Request::packed(index, filePath(m_script));
        case Running:
            return Request::packed(m_script.flag());
        default:
            return Request::packed(index, qint32(m_script.number()));
        }
    }
    QImage picture()
    {
        QImage picture(m_script.byte() % 9, m_script.byte() % 9, QImage::Format_ARGB32);
        picture.fill(qRgba(10, 20, 30, m_script.byte()));
        return picture;
    }

    /// From an object that lives, also from itself, or an address of none. An object that copies
    /// itself has twice as many frames, and after twenty times more than a run has time for.
    void copy()
    {
        constexpr int mostFrames = 1000;
        if (AnimatedImageProbe(*m_image).storedFrames().size() > mostFrames)
            return;
        const std::array<CGDRootObject *, 3> sources = {m_stage.image, m_other.data(), nullptr};
        const auto *source = sources.at(std::size_t(m_script.byte()) % sources.size());
        Request request(Request::packed(reinterpret_cast<qint64>(source) + m_script.byte() / 64));
        request.set(m_image, SpecialPropertyId::CopyFromObject, m_script.flag());
    }
    void insertFile()
    {
        if (m_script.flag())
            m_image->loadFromFile(filePath(m_script));
        else
            Request(Request::packed(qint32(m_script.number()), filePath(m_script)))
                .get(m_image, SpecialPropertyId::InsertImageFile);
    }
    void attribute()
    {
        using namespace AttributeId;
        const std::array<int, 6> ids = {StartSteppedPlayback, EnableTimer,
                                        SteppedTick,          EnterAlternateMode,
                                        LeaveAlternateMode,   2700 + m_script.byte()};
        const int id = ids.at(std::size_t(m_script.byte()) % ids.size());
        const QByteArray bytes = m_script.text();
        QDataStream input(bytes);
        m_image->SetAttribute(id, input, m_script.flag());
    }
    void tick()
    {
        AnimatedImageProbe probe(*m_image);
        for (int ticks = m_script.byte() % 16; ticks > 0 && !isOver(); --ticks)
            probe.tick();
    }
    void undo()
    {
        Framework &framework = Framework::instance();
        switch (m_script.byte() % 5) {
        case 0:
            return framework.openUndoMacro(QStringLiteral("a macro"));
        case 1:
            return framework.closeUndoMacro();
        case 2:
            return framework.undoStack()->redo();
        default:
            return framework.undoStack()->undo();
        }
    }
    void settings()
    {
        const std::array<const char *, 4> ids = {"idImagePlay", "idShiftInterval", "idLoopCount",
                                                 "idAnimatedType"};
        const QByteArray id = ids.at(std::size_t(m_script.byte()) % ids.size());
        const QByteArray raw = m_script.text();
        const QByteArray value = raw.isEmpty() ? QByteArray::number(m_script.number()) : raw;
        const QByteArray text =
            R"({"settings":[{"id":")" + id + R"(","value":")" + value + R"("}]})";
        m_image->SetSettingJson(QString::fromUtf8(text), m_script.flag(), m_script.flag());
        QString answer;
        m_image->GetSettingJson(answer);
    }
    void size()
    {
        const QSizeF size(m_script.byte() / 4.0, m_script.byte() / 4.0);
        if (m_script.flag())
            m_image->setSize(size, m_script.flag(), m_script.flag());
        else
            m_image->setCenterPos(point(), size, m_script.number(), m_script.flag());
    }
    void place()
    {
        m_image->setPos(point(), m_script.flag());
        m_image->setMirror(m_script.flag(), m_script.flag());
        m_image->setFlip(m_script.flag(), m_script.flag());
        m_image->setKeepRatio(m_script.flag());
        m_image->setOtherParams(QStringLiteral("object_name"),
                                QString::fromLatin1(m_script.text()));
    }
    QPointF point() { return {m_script.number() / 2.0, m_script.number() / 2.0}; }
    void look()
    {
        QImage canvas(12, 8, QImage::Format_ARGB32_Premultiplied);
        canvas.fill(Qt::white);
        QPainter painter(&canvas);
        painter.setRenderHint(QPainter::SmoothPixmapTransform, m_script.flag());
        painter.scale(m_script.byte() / 32.0, m_script.byte() / 32.0);
        painter.rotate(m_script.number());
        painter.translate(point());
        m_image->paint(&painter, nullptr, nullptr);
        m_image->contains(point());
        m_image->boundingRect();
        m_image->getImageSize();
    }
    void mode()
    {
        const bool isPresented = m_stage.document.alternateMode() != 0;
        const int id =
            isPresented ? AttributeId::LeaveAlternateMode : AttributeId::EnterAlternateMode;
        m_stage.document.setAlternateMode(isPresented ? 0 : 1);
        for (CAnimatedImage *image : {m_stage.image, m_other.data()}) {
            QDataStream noInput{QByteArray()};
            image->SetAttribute(id, noInput, false);
        }
    }
    void playback()
    {
        m_image->setLoopCount(m_script.number());
        m_image->setShiftInterval(m_script.number());
        m_image->setCurrentIndex(m_script.number());
        m_image->playImage(m_script.flag());
        m_image->notifyPlayStatus();
        m_image->notifyAnimatedType();
    }
    void regions()
    {
        m_image->updateRegion(m_script.number(), m_script.flag());
        m_image->generateBGImage(m_script.number());
        m_image->regenBGImage();
        m_image->shape();
    }
    void stream()
    {
        QByteArray bytes;
        {
            QDataStream output(&bytes, QIODevice::WriteOnly);
            m_image->save(output);
        }
        bytes.chop(m_script.byte() / 8);
        QDataStream input(bytes);
        replaceOther()->load(input);
    }
    void json()
    {
        QJsonObject saved;
        m_image->saveJson(saved);
        replaceOther()->loadJson(saved);
    }
    CAnimatedImage *replaceOther()
    {
        m_other->Release();
        Framework::instance().dropUndoCommands();
        m_other = new CAnimatedImage(2, true, nullptr);
        m_stage.page->addObject(m_other);
        return m_other;
    }
    /// Frames from a picture, a file, a device or nothing.
    void load()
    {
        QByteArray bytes = m_script.text();
        QBuffer device(&bytes);
        device.open(QIODevice::ReadOnly);
        QImage read = picture();
        QImage measured;
        switch (m_script.byte() % 6) {
        case 0:
            m_image->loadFromImage(m_script.flag() ? &read : nullptr);
            break;
        case 1:
            m_image->loadFromFile(filePath(m_script), &device);
            break;
        case 2:
            m_image->loadFromGifFile(filePath(m_script));
            break;
        case 3:
            m_image->loadFromGifFile(filePath(m_script), m_script.flag() ? &device : nullptr);
            break;
        case 4:
            m_image->loadFromFile(filesFolder());
            break;
        default:
            CAnimatedImage::getImageForPath(read, measured, m_script.number());
            CAnimatedImage::rectsFromImage(measured, m_script.number());
        }
    }
    /// A command of the host's own, for a setting.
    void change()
    {
        const auto type = static_cast<ANIMATEDIMAGE_CHANGE_TYPE>(m_script.byte() % 4);
        auto *command = new CAnimatedImageChangeCommand(m_image, type);
        command->setBoolValue(m_script.flag(), m_script.flag());
        command->setIntValue(m_script.number(), m_script.number());
        Framework::instance().undoStack()->push(command);
    }
    /// The functions that a host looks up by name.
    void callByName()
    {
        QDataStream noInput{QByteArray()};
        animatedImage_SetDefaultSpecialProperty(m_script.byte(), noInput);
        ThumbnailList list;
        animatedImage_GetAllThumbnail(m_script.flag() ? m_image : nullptr, m_script.flag(), list);
        m_other->Release();
        Framework::instance().dropUndoCommands();
        CBaseObject *made = createObject_animatedImage(0, m_script.byte(), m_script.flag());
        m_other = dynamic_cast<CAnimatedImage *>(made);
        m_stage.page->addObject(made);
    }
    void costumes() { m_image->generateCostumesCode(filesFolder()); }
    void thumbnails()
    {
        ThumbnailList list;
        m_image->GetAllThumbnail(m_script.flag(), list);
        m_image->generatePortraitName(QString::fromLatin1(m_script.text()), m_script.flag());
    }

    Script &m_script;
    Stage m_stage;
    QPointer<CAnimatedImage> m_other;
    CAnimatedImage *m_image = nullptr;
};

} // namespace

/// What a host does with two objects, in any order: requests, attributes, steps, undo, settings,
/// geometry, painting, saving and costumes.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // Films grow, and so does the time for a deed.
    constexpr int mostDeeds = 100;
    Script script(Fuzzing::bytes(data, size));
    Host host(script);
    for (int i = 0; i < mostDeeds && !script.isAtEnd() && !host.isOver(); ++i)
        host.act();
    return 0;
}
