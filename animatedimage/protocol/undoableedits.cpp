#include "animatedimage/core/framelist.h"
#include "animatedimage/core/picturestream.h"
#include "animatedimage/object/playback.h"
#include "animatedimage/protocol/requests.h"
#include "animatedimage/protocol/undocommands.h"
#include "host/framework.h"
#include "host/gdpage.h"
#include "host/notificationcodes.h"

#include <memory>
#include <new>

/// What the commands of these requests do to their object.
struct CAnimatedImage::UndoableEdits {
    /// Only the first frame is measured at once; the others are when they are shown.
    void setFrameList(const QList<CAnimatedPortrait> &frames) const;
    /// Stops first: that rewinds the way the old type does.
    void setAnimatedType(int type) const;
    void pushAnimatedType(int oldType, int newType) const;

    CAnimatedImage &object;
};

namespace
{

using Closure = std::function<void(QDataStream &)>;
using Frames = QList<CAnimatedPortrait>;

constexpr int NormalType = 0;

/// What a command keeps of frames: their regions are measured again when they come back.
void write(QDataStream &stream, const Frames &frames)
{
    stream << qint32(frames.size());
    for (const CAnimatedPortrait &frame : frames)
        stream << frame.name << PictureStream::withoutStrayBits(frame.image) << frame.size;
}

Frames readFrames(QDataStream &stream)
{
    Frames frames;
    qint32 count = 0;
    stream >> count;
    for (int i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        CAnimatedPortrait frame;
        stream >> frame.name >> frame.image >> frame.size;
        frames.append(frame);
    }
    return frames;
}

struct Types {
    qint32 before;
    qint32 after;
};

Types readTypes(QDataStream &stream)
{
    qint32 before = 0;
    qint32 after = 0;
    stream >> before >> after;
    return {before, after};
}

/// A macro of the host, unless one is open already. It is closed even without memory.
class UndoMacro
{
public:
    UndoMacro()
        : m_isOwn(!GetFramework()->isUndoMacroOpen())
    {
        if (m_isOwn)
            GetFramework()->openUndoMacro(QStringLiteral("IDS_KT_UNDOREDO_NAME_ANNIMATED_TYPE"));
    }
    ~UndoMacro()
    {
        try {
            if (m_isOwn)
                GetFramework()->closeUndoMacro();
        } catch (const std::bad_alloc &) { // The host does what it can.
        }
    }

private:
    Q_DISABLE_COPY(UndoMacro)

    const bool m_isOwn;
};

} // namespace

void CAnimatedImage::Requests::replaceAllFrames() const
{
    QString path;
    if (!Playback{object}.stop() || !RequestStream::rewind(stream) ||
        !RequestStream::read(stream, path)) {
        return;
    }
    // The buffer holds the list to come and then the list before.
    const QPointer<CAnimatedImage> self(&object);
    Closure redo = [self](QDataStream &data) {
        const Frames frames = readFrames(data);
        readFrames(data);
        if (self)
            UndoableEdits{*self}.setFrameList(frames);
    };
    Closure undo = [self](QDataStream &data) {
        readFrames(data);
        if (self)
            UndoableEdits{*self}.setFrameList(readFrames(data));
    };
    auto command = std::make_unique<CAnimatedUndoRedoCommand>(redo, undo);
    command->setText(GetFramework()->translated(QStringLiteral("IDS_KT_PORTRAIT_REPLACE"),
                                                QStringLiteral("Replace Portrait")));
    QDataStream data(command->data_ptr(), QIODevice::WriteOnly);
    write(data, {FrameList::frameFromFile(object.m_portraits, path)});
    write(data, object.framesWithSizes());
    CUndoRedo::GetInstance()->push(command.release());
}

void CAnimatedImage::Requests::changeAnimatedType() const
{
    qint32 type = 0;
    bool isUndoable = false;
    if (!RequestStream::read(stream, type, isUndoable))
        return;
    if (!isUndoable) {
        object.m_animatedType = type;
        object.notifyAnimatedType();
        return;
    }
    IGdPage *page = object.GetPage();
    if (!page)
        return;
    object.GetGraphicsItemPtr(); // asked for and not used

    // A background is on the page's background layer, and any other object above it.
    constexpr int backgroundLayer = 2;
    constexpr int normalLayer = 0;
    const int oldType = object.m_animatedType;
    const bool changesLayer = type != oldType && (type == BackgroundType || type == NormalType);
    qint64 layer = 0;
    if (changesLayer)
        layer = page->queryObject(&object, type == BackgroundType ? backgroundLayer : normalLayer);

    // Who listens to the undo stack may release the object, or give it to another page.
    const QPointer<CAnimatedImage> self(&object);
    const UndoMacro macro;
    if (self && changesLayer && object.GetPage() == page)
        page->applyObject(0, layer, {&object}, true, QString(), true);
    if (self)
        UndoableEdits{object}.pushAnimatedType(oldType, type);
}

void CAnimatedImage::UndoableEdits::setFrameList(const Frames &frames) const
{
    object.m_portraits.clear();
    object.addFrames(frames);
    object.m_runningIndex = 0;
    object.measureOnce(0);
    if (object.isBackgroundType())
        object.generateBGImage(0);
    object.notifyObjPropertyChanged(PropertyChange::ShownContent, QString());
    GetFramework()->notifier()->notify(NotificationCode::FrameListReplaced, 0, 0, -1);
}

void CAnimatedImage::UndoableEdits::pushAnimatedType(int oldType, int newType) const
{
    const QPointer<CAnimatedImage> self(&object);
    Closure redo = [self](QDataStream &data) {
        if (self)
            UndoableEdits{*self}.setAnimatedType(readTypes(data).after);
    };
    Closure undo = [self](QDataStream &data) {
        if (self)
            UndoableEdits{*self}.setAnimatedType(readTypes(data).before);
    };
    auto command = std::make_unique<CAnimatedUndoRedoCommand>(redo, undo);
    QDataStream data(command->data_ptr(), QIODevice::WriteOnly);
    data << qint32(oldType) << qint32(newType);
    CUndoRedo::GetInstance()->push(command.release());
}

void CAnimatedImage::UndoableEdits::setAnimatedType(int type) const
{
    if (type == BackgroundType && !Playback{object}.stop())
        return;
    object.m_animatedType = type;
    object.notifyAnimatedType();
}
