#include "flipbook/editing/editoperation.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/privatefolder.h"
#include "flipbook/base/reading.h"
#include "flipbook/editing/filmmemory.h"
#include "flipbook/editing/frameeditor.h"
#include "flipbook/editing/objectform.h"
#include "flipbook/import/framenames.h"
#include "flipbook/import/picturefile.h"
#include "flipbook/import/sourcefile.h"
#include "flipbook/object/formkeys.h"
#include "framework/page.h"

#include <limits>

namespace
{

using Apply = std::function<void(EditTarget &)>;

int number(const QString &text, int least = 0)
{
    bool isNumber = false;
    const int value = text.toInt(&isNumber);
    if (!isNumber || value < least)
        throw UsageError{QStringLiteral("'%1' is not a whole number from %2 to %3")
                             .arg(text, QString::number(least),
                                  QString::number(std::numeric_limits<int>::max()))};
    return value;
}

/// The two halves of a value around the first @p separator.
QPair<QString, QString> split(const QString &value, QChar separator)
{
    const int at = value.indexOf(separator);
    if (at < 0)
        throw UsageError{QStringLiteral("'%1' has no '%2'").arg(value, QString(separator))};
    return {value.left(at), value.mid(at + 1)};
}

QString fileName(const QString &value)
{
    if (value.isEmpty())
        throw UsageError{QStringLiteral("a file is missing")};
    return plainPath(value);
}

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
    const FilmMemory before = FilmMemory::of(target.plugin, *target.object);
    require(target, before.largest, QStringLiteral("one more frame"));
    edit(FrameEditor(*target.object));
    const FilmMemory after = FilmMemory::of(target.plugin, *target.object);
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
        FrameEditor(*target.object).rename(frame, name);
    };
}

Apply removeFrame(const QString &value)
{
    const int frame = number(value);
    return [frame](EditTarget &target) { FrameEditor(*target.object).remove(frame); };
}

Apply moveFrame(const QString &value)
{
    const auto [from, to] = twoNumbers(value);
    return
        [from = from, to = to](EditTarget &target) { FrameEditor(*target.object).move(from, to); };
}

Apply insertFile(const QString &value)
{
    const auto [place, path] = numberAndFile(value);
    return [place = place, path = path](EditTarget &target) {
        PrivateFolder folder;
        const QString copy = copyPicture(path, target.reading, folder);
        const QString wanted = FrameNames::ofFile(path);
        const QString name = FrameNames(target.plugin.frames(*target.object)).give(wanted);
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
    };
}

Apply replacePicture(const QString &value)
{
    const auto [frame, path] = numberAndFile(value);
    return [frame = frame, path = path](EditTarget &target) {
        FrameEditor(*target.object).replacePicture(frame, readPicture(path, target.reading));
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
        require(target, FilmMemory::of(target.plugin, *target.object).pixels,
                QStringLiteral("what undoes it"));
        FrameEditor(*target.object).replaceAll(copy, FrameNames::ofFile(path));
    };
}

Apply setInterval(const QString &value)
{
    const int ms = number(value, 1);
    return [ms](EditTarget &target) { FrameEditor(*target.object).setInterval(ms); };
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
        if (AnimatedObject(*target.object).loopCount() == count)
            return;
        // The panel knows forever and once only; the saved form takes any count.
        target.object =
            rebuilt(target.plugin, target.page, *target.object,
                    [count](QJsonObject &form) { form.insert(FormKey::LoopCount, count); });
    };
}

Apply setType(const QString &value)
{
    const bool isBackground = value == QLatin1String("background");
    if (!isBackground && value != QLatin1String("normal"))
        throw UsageError{QStringLiteral("'%1' is neither 'normal' nor 'background'").arg(value)};
    return [isBackground](EditTarget &target) {
        const QSizeF size = target.object->getSize();
        if (isBackground)
            require(target, MemoryBudget::forTileAtWork(size),
                    QStringLiteral("a background of %1 x %2").arg(size.width()).arg(size.height()));
        FrameEditor(*target.object).setBackground(isBackground);
    };
}

Apply mirror(const QString &)
{
    return [](EditTarget &target) { target.object->setMirror(!target.object->isMirrored(), true); };
}

Apply flip(const QString &)
{
    return [](EditTarget &target) { target.object->setFlip(!target.object->isFlipped(), true); };
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
    {"delete", "AT", "Delete frame AT.", removeFrame},
    {"move", "FROM:TO", "Move frame FROM so that it becomes number TO.", moveFrame},
    {"insert", "AT=FILE", "Insert the picture in FILE as frame number AT.", insertFile},
    {"replace", "AT=FILE", "Give frame AT the picture in FILE.", replacePicture},
    {"replace-all", "FILE", "Replace all frames by the picture in FILE.", replaceAll},
    {"interval", "MS", "Show each frame for MS milliseconds.", setInterval},
    {"loops", "N|forever|once", "Play the animation N times, forever, or once.", setLoops},
    {"type", "normal|background", "Make the object an ordinary one or a tiled background.",
     setType},
    {"mirror", "", "Mirror the object left to right.", mirror},
    {"flip", "", "Flip the object top to bottom.", flip},
};

} // namespace

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
    for (const Entry &entry : Entries) {
        if (QLatin1String(entry.name) != name)
            continue;
        const QString text = QStringLiteral("--%1 %2").arg(name, value).trimmed();
        try {
            return {text, entry.parse(value)};
        } catch (const UsageError &error) {
            throw UsageError{QStringLiteral("%1: %2").arg(text, error.reason)};
        }
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
