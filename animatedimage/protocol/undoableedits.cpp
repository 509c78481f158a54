#include "animatedimage/object/animatedimage.h"
#include "animatedimage/protocol/requests.h"
#include "animatedimage/protocol/undocommands.h"
#include "host/framework.h"
#include "host/gdpage.h"
#include "host/notificationcodes.h"

#include <QtCore/QFileInfo>
#include <QtCore/QPointer>

namespace
{

using Closure = std::function<void(QDataStream &)>;
using Frames = QList<CAnimatedPortrait>;

/// What a command keeps of frames: their regions are measured again when they come back.
void write(QDataStream &stream, const Frames &frames)
{
    stream << qint32(frames.size());
    for (const CAnimatedPortrait &frame : frames)
        stream << frame.name << frame.image << frame.size;
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

} // namespace

void CAnimatedImage::replaceAllFrames(QDataStream &stream)
{
    const QPointer<CAnimatedImage> self(this);
    stop();
    QString path;
    if (!self || !Requests::rewind(stream) || !Requests::read(stream, path))
        return;
    const QString name = generatePortraitName(QFileInfo(path).baseName(), true);

    // The buffer holds the list to come and then the list before.
    Closure redo = [self](QDataStream &data) {
        const Frames frames = readFrames(data);
        readFrames(data);
        if (self)
            self->setFrameList(frames);
    };
    Closure undo = [self](QDataStream &data) {
        readFrames(data);
        if (self)
            self->setFrameList(readFrames(data));
    };
    auto *command = new CAnimatedUndoRedoCommand(redo, undo);
    command->setText(GetFramework()->translated(QStringLiteral("IDS_KT_PORTRAIT_REPLACE"),
                                                QStringLiteral("Replace Portrait")));
    QDataStream data(command->data_ptr(), QIODevice::WriteOnly);
    write(data, {CAnimatedPortrait(name, QImage(path))});
    write(data, m_portraits);
    CUndoRedo::GetInstance()->push(command);
}

/// Only the first frame is measured at once; the others are when they are shown.
void CAnimatedImage::setFrameList(const Frames &frames)
{
    m_portraits = frames;
    m_regions.noteNewFrames();
    m_runningIndex = 0;
    updateRegion(0, true);
    if (isBackgroundType())
        generateBGImage(0);
    notifyObjPropertyChanged(PropertyChange::ShownContent, QString());
    GetFramework()->notifier()->notify(NotificationCode::FrameListReplaced, 0, 0, -1);
}

void CAnimatedImage::changeAnimatedType(QDataStream &stream)
{
    qint32 type = 0;
    bool isUndoable = false;
    if (!Requests::read(stream, type, isUndoable))
        return;
    if (!isUndoable) {
        m_animatedType = type;
        notifyAnimatedType();
        return;
    }
    IGdPage *page = GetPage();
    if (!page)
        return;
    GetGraphicsItemPtr(); // asked for and not used

    // A background lies on the page's background layer, and any other object above it.
    constexpr int normalType = 0;
    constexpr int backgroundLayer = 2;
    constexpr int normalLayer = 0;
    const bool changesLayer =
        type != m_animatedType && (type == BackgroundType || type == normalType);
    qint64 layer = 0;
    if (changesLayer)
        layer = page->queryObject(this, type == BackgroundType ? backgroundLayer : normalLayer);

    IFramework *framework = GetFramework();
    const bool ownsMacro = !framework->isUndoMacroOpen();
    if (ownsMacro)
        framework->openUndoMacro(QStringLiteral("IDS_KT_UNDOREDO_NAME_ANNIMATED_TYPE"));
    const QPointer<CAnimatedImage> self(this);
    const int oldType = m_animatedType;
    if (changesLayer)
        page->applyObject(0, layer, {this}, true, QString(), true);
    if (self)
        pushAnimatedType(oldType, type);
    if (ownsMacro)
        framework->closeUndoMacro();
}

void CAnimatedImage::pushAnimatedType(int oldType, int newType)
{
    const auto readTypes = [](QDataStream &data) {
        QPair<qint32, qint32> types;
        data >> types.first >> types.second;
        return types;
    };
    const QPointer<CAnimatedImage> self(this);
    Closure redo = [self, readTypes](QDataStream &data) {
        if (self)
            self->applyAnimatedType(readTypes(data).second);
    };
    Closure undo = [self, readTypes](QDataStream &data) {
        if (self)
            self->applyAnimatedType(readTypes(data).first);
    };
    auto *command = new CAnimatedUndoRedoCommand(redo, undo);
    QDataStream data(command->data_ptr(), QIODevice::WriteOnly);
    data << qint32(oldType) << qint32(newType);
    CUndoRedo::GetInstance()->push(command);
}

/// Stopping comes first: it rewinds the way the old type does.
void CAnimatedImage::applyAnimatedType(int type)
{
    const QPointer<CAnimatedImage> self(this);
    if (type == BackgroundType)
        stop();
    if (!self)
        return;
    m_animatedType = type;
    notifyAnimatedType();
}
