#include "tests/animatedimage/walks/stepchooser.h"

/// The panel's answer: some of the settings, each value as a text, a number or a boolean.
void StepChooser::chooseSettings(Step &step)
{
    step.op = Step::SetSettings;
    static const QStringList ids{QStringLiteral("idImagePlay"), QStringLiteral("idShiftInterval"),
                                 QStringLiteral("idLoopCount"), QStringLiteral("idAnimatedType")};
    // As they are written in the text, and as they are read.
    static const QVector<QStringList> values{{QStringLiteral("true"), QStringLiteral("true")},
                                             {QStringLiteral("false"), QStringLiteral("false")},
                                             {QStringLiteral("\"1\""), QStringLiteral("1")},
                                             {QStringLiteral("\"True\""), QStringLiteral("True")},
                                             {QStringLiteral("1"), QStringLiteral("1")},
                                             {QStringLiteral("60"), QStringLiteral("60")},
                                             {QStringLiteral("\"35\""), QStringLiteral("35")},
                                             {QStringLiteral("\"often\""), QStringLiteral("often")},
                                             {QStringLiteral("0.5"), QStringLiteral("0.5")},
                                             {QStringLiteral("-20"), QStringLiteral("-20")}};
    step.flag = chance(1, 2);
    step.other = chance(1, 15);
    QStringList elements;
    const int count = number(0, 3);
    for (int i = 0; i < count; ++i) {
        const QString id = oneOf(ids);
        const QStringList value = oneOf(values);
        elements.append(QStringLiteral(R"({"id": "%1", "value": %2})").arg(id, value.at(0)));
        step.texts += {id, value.at(1)};
    }
    const QString end = step.other ? QStringLiteral(", {}]}") : QStringLiteral("]}");
    if (step.other && elements.isEmpty())
        elements.append(QStringLiteral("7"));
    step.text = QStringLiteral(R"({"settings": [)") + elements.join(QStringLiteral(", ")) + end;
}

void StepChooser::chooseAttribute(Step &step)
{
    step.op = Step::SendAttribute;
    step.flag = chance(1, 2);
    const int dice = number(1, 100);
    if (dice <= 45) {
        step.id = 2705;
    } else if (dice <= 65) {
        step.id = 2704;
        step.input = {Wire::flag(chance(1, 3))};
    } else if (dice <= 83) {
        step.id = 2702;
        step.input = {Wire::flag(chance(1, 2)), Wire::flag(chance(1, 2))};
    } else if (dice <= 90) {
        step.id = 2804;
    } else if (dice <= 97) {
        step.id = 2805;
    } else {
        step.id = oneOf({2700, 2703, 2706, 0, -1});
    }
    disturb(step);
}

/// Requests are sometimes truncated, in a shared buffer, or in an unusual byte order.
void StepChooser::disturb(Step &step)
{
    const int bytes = Wire::size(step.input);
    if (bytes > 0 && chance(1, 8))
        step.missing = chance(1, 2) ? number(1, bytes) : qMin(bytes, oneOf({1, 4}));
    if (step.missing == 0)
        step.bytesAfter = chance(1, 4) ? number(1, 9) : 0;
    step.before = chance(1, 4) ? number(1, 5) : 0;
    step.isLittleEndian = chance(1, 6);
    step.hasBadStatus = chance(1, 25);
    if (chance(1, 25))
        step.device = step.goesToStart() ? Step::ReadOnlyBuffer : Step::Sequential;
}

void StepChooser::chooseUndo(Step &step, const ModelWorld &world)
{
    const int dice = number(1, 100);
    if (world.host.isMacroOpen && dice <= 60) {
        step.op = Step::CloseMacro;
    } else if (dice <= 35) {
        step.op = Step::Undo;
    } else if (dice <= 60) {
        step.op = Step::Redo;
    } else if (dice <= 68 && !world.host.isMacroOpen) {
        step.op = Step::OpenMacro;
    } else {
        step.op = Step::PushChange;
        step.id = oneOf({0, 1, 2, 7});
        step.number = step.id == 1 ? number(0, 1) : oneOf({0, 30, 200, -1, 2});
        step.second = step.id == 1 ? number(0, 1) : oneOf({0, 70, 150, -3, 1});
        step.flag = chance(1, 2);
    }
}

void StepChooser::chooseMode(Step &step, const ModelWorld &world)
{
    const int dice = number(1, 100);
    step.number = chance(4, 5) ? 0 : 1;
    step.second = oneOf({1, 1, 2, -1});
    if (dice <= 55) {
        step.op = world.host.modes[step.number] == 0 ? Step::Present : Step::Edit;
    } else if (dice <= 65) {
        step.op = Step::SetMode;
        step.second = number(0, 1);
    } else if (dice <= 78) {
        step.op = Step::TakeOffPage;
    } else {
        step.op = Step::PutOnPage;
        step.number = number(0, 1);
    }
}

/// How much of a stream form is cut off: some of the settings at its end, or, where the pictures
/// are in it, all of them and a part of the last picture without which it cannot be read.
int StepChooser::missingBytes(const ModelObject &object, bool hasPictures)
{
    constexpr int settings = 13;
    if (!hasPictures || chance(3, 4))
        return number(1, settings);
    const WireItem last =
        object.frames.isEmpty() ? Wire::number(0) : Wire::picture(object.frames.last().picture);
    const int size = Wire::size({last});
    return settings + (chance(1, 2) ? size - 2 : size / 2);
}

void StepChooser::chooseCopy(Step &step, const ModelWorld &world)
{
    static const QStringList members{
        QStringLiteral("IsGif"),          QStringLiteral("ShiftInterval"),
        QStringLiteral("LockScale"),      QStringLiteral("ImageMirror"),
        QStringLiteral("ImageFlip"),      QStringLiteral("LoopCount"),
        QStringLiteral("UseGifInterval"), QStringLiteral("IsRunning"),
        QStringLiteral("ImageList")};
    const int dice = number(1, 10);
    const int slot = dice == 1 ? step.object : 1 - step.object;
    step.flag = chance(1, 2);
    step.number = -1;
    if (dice == 1) {
        step.op = Step::Replace;
        return;
    }
    step.op = dice <= 6 ? Step::CopyByStream : Step::CopyByJson;
    // A store is that of one document, which must be that of both.
    const int page = world.objects[size_t(step.object)].page;
    step.other =
        chance(1, 4) && page != ModelHost::NoPage && page == world.objects[size_t(slot)].page;
    if (chance(1, 12))
        step.number = number(0, 2);
    if (step.op == Step::CopyByStream) {
        step.isLittleEndian = chance(1, 5);
        step.second = oneOf({0, 0, 0, 5, 7, 13, 19});
        if (chance(1, 6))
            step.missing =
                missingBytes(world.objects[size_t(step.object)], !step.other && step.number < 0);
    } else if (chance(1, 3)) {
        for (const QString &member : members) {
            if (chance(1, 3) && (step.number < 0 || member != QLatin1String("IsGif")))
                step.texts.append(member);
        }
    }
}
