#include "tests/animatedimage/walks/step.h"

#include "tests/animatedimage/walks/walkfiles.h"

namespace
{

QString words(bool flag)
{
    return flag ? QStringLiteral("true") : QStringLiteral("false");
}

QString words(double number)
{
    return QString::number(number, 'g', 17);
}

QString words(const QPointF &point)
{
    return QStringLiteral("(%1, %2)").arg(words(point.x()), words(point.y()));
}

QString words(const QSizeF &size)
{
    return QStringLiteral("%1 x %2").arg(words(size.width()), words(size.height()));
}

QString call(const char *name, const QStringList &arguments = {})
{
    return QString::fromLatin1(name) + QLatin1Char('(') + arguments.join(QStringLiteral(", ")) +
           QLatin1Char(')');
}

QString fileName(const QString &path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

QString sourceName(int number)
{
    return number < 0 ? QStringLiteral("no device")
                      : fileName(WalkFiles::instance().sources().at(number).path);
}

QString request(const char *name, const Step &step)
{
    QString text = call(name, {QString::number(step.id), Wire::words(step.input)});
    if (step.missing > 0)
        text += QStringLiteral(", the last %1 bytes missing").arg(step.missing);
    if (step.device == Step::ReadOnlyBuffer)
        text += QStringLiteral(", from a buffer that is only read");
    if (step.device == Step::Sequential)
        text += QStringLiteral(", from a sequential device");
    if (step.hasBadStatus)
        text += QStringLiteral(", with a bad status from before");
    if (step.isLittleEndian)
        text += QStringLiteral(", little endian");
    if (step.before > 0)
        text += QStringLiteral(", the stream at byte %1").arg(step.before);
    if (step.bytesAfter > 0)
        text += QStringLiteral(", before %1 other bytes").arg(step.bytesAfter);
    return text;
}

QString change(const Step &step)
{
    return QStringLiteral("push a change of setting %1 from %2 to %3")
        .arg(QString::number(step.id), QString::number(step.number), QString::number(step.second));
}

QString copy(const char *name, const Step &step)
{
    QStringList arguments;
    if (step.other)
        arguments.append(QStringLiteral("pictures in the store"));
    if (step.missing > 0)
        arguments.append(QStringLiteral("the last %1 bytes missing").arg(step.missing));
    if (!step.texts.isEmpty())
        arguments.append(QStringLiteral("without ") + step.texts.join(QStringLiteral(", ")));
    if (step.number >= 0)
        arguments.append(QStringLiteral("frames from ") + sourceName(step.number));
    if (step.second > 0)
        arguments.append(QStringLiteral("stream version %1").arg(step.second));
    if (step.isLittleEndian)
        arguments.append(QStringLiteral("little endian"));
    arguments.append(step.flag ? QStringLiteral("dropping the undo commands")
                               : QStringLiteral("keeping the undo commands"));
    return call(name, arguments);
}

QString playbackWords(const Step &step)
{
    const QString number = QString::number(step.number);
    switch (step.op) {
    case Step::Tick:
        return QStringLiteral("a tick of the timer");
    case Step::Play:
        return call("playImage", {words(step.flag)});
    case Step::SetIndex:
        return call("setCurrentIndex", {number});
    case Step::SetInterval:
        return call("setShiftInterval", {number});
    case Step::SetLoopCount:
        return call("setLoopCount", {number});
    case Step::SetKeepRatio:
        return call("setKeepRatio", {words(step.flag)});
    case Step::GenerateTile:
        return call("generateBGImage", {number});
    case Step::RegenerateTile:
        return call("regenBGImage");
    case Step::UpdateRegion:
        return call("updateRegion", {number, words(step.flag)});
    case Step::UpdateRegions:
        return call("updateRegion", {words(step.flag)});
    case Step::NotifyType:
        return call("notifyAnimatedType");
    default:
        return {};
    }
}

QString geometryWords(const Step &step)
{
    switch (step.op) {
    case Step::SetSize:
        return call("setSize", {words(step.size), words(step.flag), words(step.other)});
    case Step::SetCenterPos:
        return call("setCenterPos",
                    {words(step.point), words(step.size), words(step.angle), words(step.flag)});
    case Step::SetPos:
        return call("setPos", {words(step.point), words(step.flag)});
    case Step::SetMirror:
        return call("setMirror", {words(step.flag), words(step.other)});
    case Step::SetFlip:
        return call("setFlip", {words(step.flag), words(step.other)});
    case Step::SetStatus:
        return call("setStatus", {QString::number(step.number)});
    case Step::SetRotation:
        return call("setRotate", {words(step.angle), words(step.flag)});
    case Step::SetRotateType:
        return call("setKTRotateType", {QString::number(step.number)});
    case Step::SetShadow:
        return step.flag ? QStringLiteral("give it a shadow") : QStringLiteral("take its shadow");
    case Step::SetHandleSize:
        return call("SetHandleSize", {words(step.angle)});
    case Step::SetHasShape:
        return QStringLiteral("set its shape flag ") + words(step.flag);
    default:
        return {};
    }
}

QString hostWords(const Step &step)
{
    switch (step.op) {
    case Step::Undo:
        return QStringLiteral("undo");
    case Step::Redo:
        return QStringLiteral("redo");
    case Step::OpenMacro:
        return QStringLiteral("open a macro");
    case Step::CloseMacro:
        return QStringLiteral("close the macro");
    case Step::PushChange:
        return change(step);
    case Step::Present:
        return QStringLiteral("present page %1, mode %2")
            .arg(QString::number(step.number), QString::number(step.second));
    case Step::Edit:
        return QStringLiteral("edit page %1").arg(step.number);
    case Step::SetMode:
        return QStringLiteral("set the mode of page %1 to %2, without attributes")
            .arg(QString::number(step.number), QString::number(step.second));
    case Step::PutOnPage:
        return QStringLiteral("put it on page %1").arg(step.number);
    case Step::TakeOffPage:
        return QStringLiteral("take it off its page");
    case Step::CopyByStream:
        return copy("save by stream and load in place of the other", step);
    case Step::CopyByJson:
        return copy("save by JSON and load in place of the other", step);
    case Step::Replace:
        return step.flag ? QStringLiteral("a new object in its place, dropping the undo commands")
                         : QStringLiteral("a new object in its place, keeping the undo commands");
    default:
        return {};
    }
}

QString contentWords(const Step &step)
{
    switch (step.op) {
    case Step::AddFrame:
        return call("add a frame", {step.text, Wire::words({Wire::picture(step.number)})});
    case Step::SetParam:
        return call("setOtherParams", {step.text, QLatin1String(step.value.typeName()) +
                                                      QLatin1Char(' ') + step.value.toString()});
    case Step::SendAttribute:
        return request("SetAttribute", step);
    case Step::GetProperty:
        return request("GetSpecialProperty", step);
    case Step::SetProperty:
        return request("SetSpecialProperty", step);
    case Step::SetSettings:
        return call("SetSettingJson", {step.text});
    case Step::GetSettings:
        return call("GetSettingJson");
    case Step::LoadImage:
        return call("loadFromImage", {Wire::words({Wire::picture(step.number)})});
    case Step::LoadFile:
        return call("loadFromFile", {sourceName(step.number)});
    case Step::LoadFileWithDevice:
        return call("loadFromFile", {sourceName(step.number), sourceName(step.second)});
    case Step::CompareThumbnails:
        return call("GetAllThumbnail", {words(step.flag)});
    case Step::ComparePainting:
        return call("OnQPainterDraw");
    default:
        return {};
    }
}

} // namespace

bool Step::goesToStart() const
{
    if (op == GetProperty)
        return id == 5005 || id == 5006 || id == 5007 || id == 5010 || id == 5011 || id == 5014 ||
               id == 5020;
    return op == SetProperty && (id == 5007 || id == 5015);
}

QString Step::words() const
{
    for (const auto wordsOf : {playbackWords, geometryWords, hostWords, contentWords}) {
        const QString text = wordsOf(*this);
        if (!text.isEmpty())
            return (object == 0 ? QStringLiteral("first: ") : QStringLiteral("second: ")) + text;
    }
    return QStringLiteral("a step without words");
}
