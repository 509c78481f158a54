#include "tests/animatedimage/hostilecalls/completestate.h"

#include "framework/framework.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QDebug>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

namespace
{

QString hashed(const QByteArray &bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex());
}

class Lines
{
public:
    template<typename Value>
    void add(const char *name, const Value &value)
    {
        QString line;
        QDebug(&line).nospace() << name << ": " << value;
        all.append(line);
    }

    QStringList all;
};

void addFields(Lines &lines, AnimatedImageProbe &probe)
{
    lines.add("running", probe.isRunning());
    lines.add("index", probe.runningIndex());
    lines.add("loops done", probe.loopsDone());
    lines.add("interval", probe.shiftInterval());
    lines.add("keep ratio", probe.keepRatio());
    lines.add("mirror", probe.mirror());
    lines.add("flip", probe.flip());
    lines.add("loop count", probe.loopCount());
    lines.add("play enabled", probe.playEnabled());
    lines.add("was running", probe.wasRunning());
    lines.add("elapsed", probe.elapsedMs());
    lines.add("type", probe.animatedType());
    lines.add("visible part", probe.bgRect());
    const QImage &tile = probe.bgImage();
    lines.add("tile", tile.size());
    lines.add("pixels of the tile",
              hashed(QByteArray::fromRawData(reinterpret_cast<const char *>(tile.constBits()),
                                             int(tile.sizeInBytes()))));
    lines.add("pattern", probe.bgPos());
    lines.add("saved running", probe.savedRunning());
    lines.add("saved index", probe.savedIndex());
    lines.add("saved sizes", probe.savedFrameSizes());
    lines.add("handles", probe.handleSize());
    lines.add("timer", probe.timer()->isActive());
    lines.add("timer's interval", probe.timer()->interval());
}

void addFrames(Lines &lines, AnimatedImageProbe &probe)
{
    for (const CAnimatedPortrait &frame : probe.storedFrames()) {
        lines.add("frame", frame.name);
        lines.add("pixels", frame.image.cacheKey());
        lines.add("size", frame.size);
    }
}

void addGeometry(Lines &lines, CAnimatedImage &image, AnimatedImageProbe &probe)
{
    lines.add("rect", probe.rect());
    lines.add("position", image.getPos());
    lines.add("place in the scene", image.pos());
    lines.add("angle", image.getKTRotateDegree());
    lines.add("kind of rotation", image.getKTRotateType());
    lines.add("mirrored", image.isMirrored());
    lines.add("flipped", image.isFlipped());
    lines.add("z", image.zValue());
    lines.add("status", image.getStatus());
}

void addSavedForms(Lines &lines, CAnimatedImage &image)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    image.save(stream);
    lines.add("stream form", hashed(bytes));
    QJsonObject json;
    image.saveJson(json);
    lines.add("JSON form", hashed(QJsonDocument(json).toJson()));
}

} // namespace

QStringList completeState(Stage &stage)
{
    Lines lines;
    // First: saving brings sizes up to date that were left for later.
    addSavedForms(lines, *stage.image);
    addFields(lines, stage.probe);
    addFrames(lines, stage.probe);
    addGeometry(lines, *stage.image, stage.probe);
    const UndoStack &stack = *Framework::instance().undoStack();
    lines.add("commands", stack.count());
    lines.add("commands done", stack.index());
    lines.add("open macro", stack.isMacroOpen());
    lines.add("heard", stage.log.entries());
    return lines.all;
}

QString firstDifference(const QStringList &before, const QStringList &after)
{
    for (int i = 0; i < qMax(before.size(), after.size()); ++i) {
        if (before.value(i) != after.value(i))
            return QStringLiteral("before: %1, after: %2").arg(before.value(i), after.value(i));
    }
    return QString();
}
