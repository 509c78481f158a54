#include "flipbook/editing/editoperation.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/privatefolder.h"
#include "flipbook/base/reading.h"
#include "flipbook/editing/filmmemory.h"
#include "flipbook/editing/frameeditor.h"
#include "flipbook/editing/objectform.h"
#include "flipbook/editing/objectoperation.h"
#include "flipbook/editing/operationvalue.h"
#include "flipbook/import/framenames.h"
#include "flipbook/import/picturefile.h"
#include "flipbook/object/filmstate.h"
#include "flipbook/object/formkeys.h"
#include "framework/page.h"

#include <QtCore/QFileInfo>

#include <algorithm>

namespace
{

using Apply = std::function<void(EditTarget &)>;

using OperationValue::fileName;
using OperationValue::number;
using OperationValue::split;

QPair<int, int> twoNumbers(const QString &value)
{
    const auto [first, second] = split(value, QLatin1Char(':'));
    return {number(first), number(second)};
}

QPair<int, QString> numberAndFile(const QString &value)
{
    const auto [first, second] = split(value, QLatin1Char('='));
    return {number(first), fileName(second)};
}

void require(const EditTarget &target, qint64 bytes, const QString &what)
{
    const QString reason = target.reading.memory().refusal(bytes, what);
    if (!reason.isEmpty())
        throw EditRefused{reason};
}

/// Makes an edit that may add a frame as large as the largest.
template<typename Edit>
void editFrames(EditTarget &target, const Edit &edit)
{
    const FilmMemory before = FilmMemory::of(target.plugin, target.chosen());
    require(target, before.largest, QStringLiteral("one more frame"));
    edit(FrameEditor(target.chosen()));
    const FilmMemory after = FilmMemory::of(target.plugin, target.chosen());
    target.reading.memory().take(qMax<qint64>(0, after.pixels - before.pixels));
}

Apply insertBlank(const QString &value)
{
    const int place = number(value);
    return [place](EditTarget &target) {
        editFrames(target, [place](FrameEditor editor) { editor.insertBlank(place); });
    };
}

Apply duplicate(const QString &value)
{
    const auto [from, place] = twoNumbers(value);
    return [from = from, place = place](EditTarget &target) {
        editFrames(target, [&](FrameEditor editor) { editor.duplicate(from, place); });
    };
}

Apply renameFrame(const QString &value)
{
    const auto [frame, name] = split(value, QLatin1Char('='));
    return [frame = number(frame), name = name](EditTarget &target) {
        FrameEditor(target.chosen()).rename(frame, name);
    };
}

Apply removeFrames(const QString &value)
{
    const auto [first, last] = OperationValue::range(value);
    return [first = first, last = last](EditTarget &target) {
        FrameEditor(target.chosen()).removeRange(first, last);
    };
}

Apply moveFrame(const QString &value)
{
    const auto [from, to] = twoNumbers(value);
    return
        [from = from, to = to](EditTarget &target) { FrameEditor(target.chosen()).move(from, to); };
}

/// Files that are separated by commas; a single one may have commas in its name.
QStringList fileNames(const QString &value)
{
    if (QFileInfo::exists(value))
        return {fileName(value)};
    QStringList names;
    const QStringList parts = value.split(QLatin1Char(','));
    for (const QString &part : parts)
        names << fileName(part);
    return names;
}

void insertOne(EditTarget &target, int place, const QString &path)
{
    PrivateFolder folder;
    const QString copy = copyPicture(path, target.reading, folder);
    const QString wanted = FrameNames::ofFile(path);
    const QString name = FrameNames(target.plugin.frames(target.chosen())).give(wanted);
    bool isInserted = false;
    editFrames(target,
               [&](FrameEditor editor) { isInserted = editor.insertFile(place, copy, name); });
    if (isInserted) {
        if (name != wanted)
            target.warnings << path + QStringLiteral(": ") + FrameNames::told(wanted, name);
        return;
    }
    // Only to say why.
    readCopy(copy, path, target.reading.memory());
    throw Failure{path, QStringLiteral("the picture cannot be read")};
}

Apply insertFiles(const QString &value)
{
    const auto [first, files] = split(value, QLatin1Char('='));
    return [first = number(first), paths = fileNames(files)](EditTarget &target) {
        int place = first;
        for (const QString &path : paths)
            insertOne(target, place++, path);
    };
}

Apply replacePicture(const QString &value)
{
    const auto [frame, path] = numberAndFile(value);
    return [frame = frame, path = path](EditTarget &target) {
        FrameEditor(target.chosen()).replacePicture(frame, readPicture(path, target.reading));
    };
}

Apply replaceAll(const QString &value)
{
    return [path = fileName(value)](EditTarget &target) {
        PrivateFolder folder;
        const QString copy = copyPicture(path, target.reading, folder);
        // The object would take anything for an empty picture.
        readCopy(copy, path, target.reading.memory());
        // The command keeps all frames, each on its own, to undo this.
        require(target, FilmMemory::of(target.plugin, target.chosen()).pixels,
                QStringLiteral("what undoes it"));
        FrameEditor(target.chosen()).replaceAll(copy, FrameNames::ofFile(path));
    };
}

Apply setInterval(const QString &value)
{
    const int ms = number(value, 1);
    return [ms](EditTarget &target) { FrameEditor(target.chosen()).setInterval(ms); };
}

Apply setFramesPerSecond(const QString &value)
{
    constexpr double most = 1000.0;
    const double fps = OperationValue::real(value, 1.0 / most, most);
    const int ms = qRound(1000.0 / fps);
    return [ms](EditTarget &target) { FrameEditor(target.chosen()).setInterval(ms); };
}

Apply reverse(const QString &)
{
    return [](EditTarget &target) {
        Plugin::Frames frames = target.plugin.frames(target.chosen());
        std::reverse(frames.begin(), frames.end());
        const int shown = AnimatedObject(target.chosen()).shownIndex();
        OwnedObject successor = FilmState(target.chosen()).withFrames(target.plugin, frames, shown);
        target.object = exchanged(target.pageOfChosen(), target.chosen(), std::move(successor));
    };
}

/// The object's count for a number of times that a film is played: repetitions after the first.
int loopCount(const QString &value)
{
    if (value == QLatin1String("forever"))
        return -1;
    return value == QLatin1String("once") ? 0 : number(value, 1) - 1;
}

Apply setLoops(const QString &value)
{
    const int count = loopCount(value);
    return [count](EditTarget &target) {
        if (AnimatedObject(target.chosen()).loopCount() == count)
            return;
        // The panel knows forever and once only; the saved form takes any count.
        target.object =
            rebuilt(target.plugin, target.pageOfChosen(), target.chosen(),
                    [count](QJsonObject &form) { form.insert(FormKey::LoopCount, count); });
    };
}

Apply setType(const QString &value)
{
    const bool isBackground = value == QLatin1String("background");
    if (!isBackground && value != QLatin1String("normal"))
        throw UsageError{QStringLiteral("'%1' is neither 'normal' nor 'background'").arg(value)};
    return [isBackground](EditTarget &target) {
        if (isBackground)
            target.requireBackground(target.chosen().getSize());
        FrameEditor(target.chosen()).setBackground(isBackground);
    };
}

Apply mirror(const QString &)
{
    return
        [](EditTarget &target) { target.chosen().setMirror(!target.chosen().isMirrored(), true); };
}

Apply flip(const QString &)
{
    return [](EditTarget &target) { target.chosen().setFlip(!target.chosen().isFlipped(), true); };
}

struct Entry {
    const char *name;
    const char *value;
    const char *help;
    Apply (*parse)(const QString &value);
};

constexpr Entry Entries[] = {
    {"insert-blank", "AT", "Insert a transparent frame as number AT.", insertBlank},
    {"duplicate", "FROM:AT", "Insert a copy of frame FROM as number AT.", duplicate},
    {"rename", "AT=NAME", "Give frame AT the name NAME.", renameFrame},
    {"delete", "AT|FROM-TO", "Delete frame AT, or the frames FROM to TO.", removeFrames},
    {"move", "FROM:TO", "Move frame FROM so that it becomes number TO.", moveFrame},
    {"insert", "AT=FILE,...",
     "Insert the picture in FILE as frame number AT; those in several FILEs follow each other.",
     insertFiles},
    {"replace", "AT=FILE", "Give frame AT the picture in FILE.", replacePicture},
    {"replace-all", "FILE", "Replace all frames by the picture in FILE.", replaceAll},
    {"interval", "MS", "Show each frame for MS milliseconds.", setInterval},
    {"fps", "N", "Show N frames a second: each for 1000 / N milliseconds, rounded.",
     setFramesPerSecond},
    {"reverse", "", "Reverse the order of the frames.", reverse},
    {"loops", "N|forever|once", "Play the animation N times, forever, or once.", setLoops},
    {"type", "normal|background", "Make the object an ordinary one or a tiled background.",
     setType},
    {"mirror", "", "Mirror the object left to right.", mirror},
    {"flip", "", "Flip the object top to bottom.", flip},
    {"move-to", "X,Y", "Put the top left corner of the object at X, Y on the page.",
     ObjectOperation::moveTo},
    {"size", "WxH", "Make the object W units wide and H units high.", ObjectOperation::resize},
    {"scale", "F", "Make the object F times as large.", ObjectOperation::scale},
    {"rotate", "DEG", "Rotate the object clockwise by DEG degrees around its centre.",
     ObjectOperation::rotate},
    {"fit-page", "", "Make the object cover its page exactly.", ObjectOperation::fitPage},
    {"name", "TEXT", "Give the object the name TEXT; its frames keep theirs.",
     ObjectOperation::rename},
    {"raise", "", "Move the object above the next one in its layer.", ObjectOperation::raise},
    {"lower", "", "Move the object below the next one in its layer.", ObjectOperation::lower},
    {"raise-to-top", "", "Move the object above all others in its layer.",
     ObjectOperation::raiseToTop},
    {"lower-to-bottom", "", "Move the object below all others in its layer.",
     ObjectOperation::lowerToBottom},
    {"remove", "", "Remove the object from its page.", ObjectOperation::remove},
    {"add", "FILE",
     "Add the animation or picture in FILE in the middle of the page; what follows edits it.",
     ObjectOperation::add},
    {"page-size", "WxH", "Make the page W units wide and H units high.",
     ObjectOperation::setPageSize},
};

/// Makes a number of another object the one that the operations after it edit.
constexpr Entry Choice = {"object", "N", "", ObjectOperation::choose};

EditOperation parsed(const Entry &entry, const QString &value)
{
    const QString text = QStringLiteral("--%1 %2").arg(QLatin1String(entry.name), value).trimmed();
    try {
        return {text, entry.parse(value)};
    } catch (const UsageError &error) {
        throw UsageError{QStringLiteral("%1: %2").arg(text, error.reason)};
    }
}

} // namespace

CBaseObject &EditTarget::chosen() const
{
    if (!object)
        throw EditRefused{whyNone};
    return *object;
}

Page &EditTarget::pageOfChosen() const
{
    return static_cast<Page &>(*chosen().scene());
}

void EditTarget::requireBackground(const QSizeF &size) const
{
    require(*this, MemoryBudget::forTileAtWork(size),
            QStringLiteral("a background of %1 x %2").arg(size.width()).arg(size.height()));
}

const QVector<EditOption> &editOptions()
{
    static const QVector<EditOption> options = [] {
        QVector<EditOption> list;
        for (const Entry &entry : Entries)
            list.append(
                {QLatin1String(entry.name), QLatin1String(entry.value), QLatin1String(entry.help)});
        return list;
    }();
    return options;
}

EditOperation parseEditOperation(const QString &name, const QString &value)
{
    if (QLatin1String(Choice.name) == name)
        return parsed(Choice, value);
    for (const Entry &entry : Entries) {
        if (QLatin1String(entry.name) == name)
            return parsed(entry, value);
    }
    throw UsageError{QStringLiteral("'--%1' is not an operation").arg(name)};
}

void applyAll(const QVector<EditOperation> &operations, EditTarget &target, const QString &document)
{
    for (const EditOperation &operation : operations) {
        try {
            operation.apply(target);
        } catch (const EditRefused &refused) {
            throw Failure{document, QStringLiteral("%1: %2").arg(operation.text, refused.reason)};
        } catch (const Failure &failure) {
            throw Failure{
                document,
                QStringLiteral("%1: %2: %3").arg(operation.text, failure.subject, failure.reason)};
        }
    }
}
