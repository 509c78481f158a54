#include "tests/animatedimage/walks/comparison.h"

#include "framework/framework.h"

#include <cstring>

namespace
{

QString words(int value)
{
    return QString::number(value);
}

QString words(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

QString words(double value)
{
    return QString::number(value, 'g', 17);
}

QString words(const QString &value)
{
    return QLatin1Char('"') + value + QLatin1Char('"');
}

QString words(const QPointF &value)
{
    return words(value.x()) + QStringLiteral(", ") + words(value.y());
}

QString words(const QSizeF &value)
{
    return words(value.width()) + QStringLiteral(" x ") + words(value.height());
}

QString words(const QSize &value)
{
    return words(QSizeF(value));
}

QString words(const QRectF &value)
{
    return words(value.topLeft()) + QStringLiteral(", ") + words(value.size());
}

bool same(double a, double b)
{
    return a == b || (a != a && b != b);
}

bool same(int a, int b)
{
    return a == b;
}

bool same(bool a, bool b)
{
    return a == b;
}

bool same(const QString &a, const QString &b)
{
    return a == b;
}

bool same(const QSize &a, const QSize &b)
{
    return a == b;
}

// Qt compares these by and large.

bool same(const QPointF &a, const QPointF &b)
{
    return same(a.x(), b.x()) && same(a.y(), b.y());
}

bool same(const QSizeF &a, const QSizeF &b)
{
    return same(a.width(), b.width()) && same(a.height(), b.height());
}

bool same(const QRectF &a, const QRectF &b)
{
    return same(a.topLeft(), b.topLeft()) && same(a.size(), b.size());
}

/// Keeps the first difference that is found.
class Finder
{
public:
    template<typename Value>
    void compare(const char *what, const Value &found, const Value &expected)
    {
        if (m_difference.isEmpty() && !same(found, expected))
            m_difference = QStringLiteral("%1 is %2, not %3")
                               .arg(QString::fromLatin1(what), words(found), words(expected));
    }

    void require(bool holds, const char *what)
    {
        if (m_difference.isEmpty() && !holds)
            m_difference = QString::fromLatin1(what);
    }

    void complain(const QString &difference)
    {
        if (m_difference.isEmpty())
            m_difference = difference;
    }

    /// Takes what another found of one of several.
    void takeOver(const char *what, int number, const Finder &other)
    {
        if (other.hasFound())
            complain(QStringLiteral("of %1 %2: ").arg(QString::fromLatin1(what)).arg(number) +
                     other.m_difference);
    }

    bool hasFound() const { return !m_difference.isEmpty(); }
    const QString &difference() const { return m_difference; }

private:
    QString m_difference;
};

bool samePixels(const QImage &image, int picture)
{
    const QImage &expected = PicturePool::instance().image(picture);
    return image == expected && image.format() == expected.format() &&
           same(double(image.devicePixelRatio()), 1.0);
}

void compareFrames(Finder &finder, const QList<CAnimatedPortrait> &frames,
                   const QList<ModelFrame> &expected)
{
    finder.compare("the number of frames", frames.size(), expected.size());
    for (int i = 0; i < frames.size() && !finder.hasFound(); ++i) {
        const CAnimatedPortrait &frame = frames.at(i);
        const ModelFrame &itsModel = expected.at(i);
        Finder itsFinder;
        itsFinder.compare("the name", frame.name, itsModel.name);
        itsFinder.compare("the size", frame.size, itsModel.size);
        itsFinder.compare("the same picture", samePixels(frame.image, itsModel.picture), true);
        // A region may be computed when it is first needed: only one that is there is compared.
        if (frame.regionSize.isValid()) {
            itsFinder.compare("the region's size", frame.regionSize, itsModel.regionSize);
            itsFinder.compare("the same rectangles", frame.rects == itsModel.rects, true);
        }
        finder.takeOver("frame", i, itsFinder);
    }
}

void compareHostState(Finder &finder, CAnimatedImage *object, AnimatedImageProbe &probe,
                      const ModelObject &model)
{
    finder.compare("the base's position", object->CGDRootObject::getPos(), model.pos);
    finder.compare("the base's rectangle", probe.rect(), QRectF(QPointF(0.0, 0.0), model.size));
    finder.compare("the rotation", object->getKTRotateDegree(), model.degree);
    finder.compare("the rotation type", object->getKTRotateType(), model.rotateType);
    finder.compare("the live mirror flag", probe.isMirrored(), model.isMirrored);
    finder.compare("the live flip flag", probe.isFlipped(), model.isFlipped);
    finder.compare("the flag of layer effects", probe.hasLayerEffects(), model.shadow.isValid());
    finder.compare("the shape flag", probe.hasShape(), model.hasShape);
    finder.compare("the flag of a stale rectangle", probe.rectStale(), model.isRectStale);
    finder.compare("the number of the object", object->objectId(), model.objectId);
    finder.require(probe.otherParams() == model.params, "the other-params differ");
    finder.compare("getObjName()", object->getObjName(), QStringLiteral("animated image"));
}

void compareFields(Finder &finder, AnimatedImageProbe &probe, const ModelObject &model)
{
    finder.compare("m_isRunning", probe.isRunning(), model.isRunning);
    finder.compare("m_runningIndex", probe.runningIndex(), model.index);
    finder.compare("m_loopsDone", probe.loopsDone(), model.loopsDone);
    finder.compare("m_shiftInterval", probe.shiftInterval(), model.interval);
    finder.compare("m_keepRatio", probe.keepRatio(), model.keepRatio);
    finder.compare("m_mirror", probe.mirror(), model.mirror);
    finder.compare("m_flip", probe.flip(), model.flip);
    finder.compare("m_loopCount", probe.loopCount(), model.loopCount);
    finder.compare("m_playEnabled", probe.playEnabled(), model.playEnabled);
    finder.compare("m_wasRunning", probe.wasRunning(), model.wasRunning);
    finder.compare("m_elapsedMs", probe.elapsedMs(), model.elapsedMs);
    finder.compare("m_animatedType", probe.animatedType(), model.type);
    finder.compare("m_bgRect", probe.bgRect(), model.bgRect);
    finder.compare("m_bgPos", probe.bgPos(), model.bgPos);
    finder.compare("m_savedRunning", probe.savedRunning(), model.savedRunning);
    finder.compare("m_savedIndex", probe.savedIndex(), model.savedIndex);
    finder.compare("m_handleSize", probe.handleSize(), model.handleSize);
    finder.compare("whether the timer is active", probe.timer()->isActive(), model.isTimerActive);
    finder.compare("the interval of the timer", probe.timer()->interval(), model.timerInterval);
    finder.compare("the number of saved sizes", probe.savedFrameSizes().size(),
                   model.savedSizes.size());
    for (int i = 0; i < model.savedSizes.size() && !finder.hasFound(); ++i)
        finder.compare("a saved size", probe.savedFrameSizes().at(i), model.savedSizes.at(i));
}

void compareAnswers(Finder &finder, CAnimatedImage *object, AnimatedImageProbe &probe,
                    const ModelObject &model)
{
    finder.compare("getImageSize()", object->getImageSize(), model.imageSize());
    finder.compare("getPos()", object->getPos(), model.getPos());
    finder.compare("boundingRect()", object->boundingRect(),
                   model.isPresentedBackground() ? model.bgRect
                                                 : object->CBaseObject::boundingRect());
    finder.compare("the size of m_bgImage", probe.bgImage().size(),
                   QSize(2 * model.tile.width, 2 * model.tile.height));
}

bool samePath(const QPainterPath &a, const QPainterPath &b)
{
    if (a.elementCount() != b.elementCount())
        return false;
    for (int i = 0; i < a.elementCount(); ++i) {
        const QPainterPath::Element one = a.elementAt(i);
        const QPainterPath::Element other = b.elementAt(i);
        if (one.type != other.type || !same(one.x, other.x) || !same(one.y, other.y))
            return false;
    }
    return a.elementCount() == 0 || a.fillRule() == b.fillRule();
}

void compareThoroughly(Finder &finder, CAnimatedImage *object, AnimatedImageProbe &probe,
                       const ModelObject &model)
{
    finder.require(samePath(object->shape(), model.shape()), "shape() differs");
    const QImage tile = model.tilePixels();
    finder.require(probe.bgImage() == tile && probe.bgImage().format() == tile.format(),
                   "the pixels of m_bgImage differ");
}

void compareObject(Finder &finder, CAnimatedImage *object, const ModelObject &model,
                   Comparison::Depth depth)
{
    AnimatedImageProbe probe(*object);
    compareFields(finder, probe, model);
    compareFrames(finder, probe.frames(), model.frames);
    compareHostState(finder, object, probe, model);
    if (!finder.hasFound())
        compareAnswers(finder, object, probe, model);
    if (depth == Comparison::Thorough && !finder.hasFound())
        compareThoroughly(finder, object, probe, model);
}

void compareBuffer(Finder &finder, const Step &step, const ModelAnswer &expected,
                   const Found &found)
{
    const bool isWritten = expected.isWritten && step.device == Step::Buffer;
    finder.require(!step.hasBadStatus || found.status == QDataStream::ReadCorruptData,
                   "the status that the stream came with is gone");
    if (!isWritten) {
        finder.require(found.buffer == found.bufferBefore,
                       "there is an answer where none is expected");
        return;
    }
    const int at = expected.fromStart ? 0 : found.answerAt;
    int length = 0;
    if (!Wire::matches(found.buffer.mid(at), expected.items, step.order(), length))
        finder.complain(QStringLiteral("the answer is not: ") + Wire::words(expected.items));
    finder.require(found.buffer.left(at) == found.bufferBefore.left(at) &&
                       found.buffer.mid(at + length) == found.bufferBefore.mid(at + length),
                   "the bytes around the answer differ");
}

void compareEvents(Finder &finder, const QStringList &events, const QStringList &expected)
{
    for (int i = 0; i < qMax(events.size(), expected.size()) && !finder.hasFound(); ++i) {
        const QString none = QStringLiteral("(nothing more)");
        const QString one = i < events.size() ? events.at(i) : none;
        const QString other = i < expected.size() ? expected.at(i) : none;
        if (one != other)
            finder.complain(
                QStringLiteral("event %1 is: %2, not: %3").arg(QString::number(i + 1), one, other));
    }
}

void compareStack(Finder &finder, const ModelHost &host)
{
    const QUndoStack &stack = *Framework::instance().undoStack();
    finder.compare("the number of undo steps", stack.count(), host.commands.size());
    finder.compare("the number of undo steps done", stack.index(), host.doneCommands);
    if (host.doneCommands > 0 && !finder.hasFound())
        finder.compare("the text of the undo step", stack.text(host.doneCommands - 1),
                       host.commands.at(host.doneCommands - 1).text);
}

void comparePages(Finder &finder, const ModelHost &host, Actor &actor)
{
    for (int page = 0; page < ModelHost::Pages; ++page)
        finder.require(actor.objectsOf(page) == host.objectsOf(page),
                       "the objects of a page, or their order, differ");
}

} // namespace

namespace Comparison
{

QString firstDifference(const Step &step, const Outcome &expected, const Found &found,
                        const ModelWorld &model, Actor &actor, const QStringList &events,
                        Depth depth)
{
    Finder finder;
    finder.complain(found.complaint);
    finder.compare("the result", found.result, expected.result);
    finder.compare("the text", found.text, expected.text);
    compareBuffer(finder, step, expected.answer, found);
    compareEvents(finder, events, model.host.events);
    compareStack(finder, model.host);
    comparePages(finder, model.host, actor);
    for (int slot = 0; slot < 2 && !finder.hasFound(); ++slot) {
        Finder itsFinder;
        compareObject(itsFinder, actor.object(slot), model.objects[size_t(slot)], depth);
        finder.takeOver("object", slot + 1, itsFinder);
    }
    return finder.difference();
}

} // namespace Comparison
