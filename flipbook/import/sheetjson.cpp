#include "flipbook/import/sheetjson.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/reading.h"
#include "flipbook/base/saturating.h"
#include "flipbook/import/naturalorder.h"
#include "flipbook/import/picturefile.h"
#include "flipbook/import/picturelist.h"

#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtGui/QTransform>

#include <algorithm>
#include <limits>

namespace
{

constexpr qint64 MaxJsonBytes = qint64(64) << 20;
constexpr int LongestSide = 1 << 20;
constexpr int BytesPerPixel = 4;

/// A frame as the JSON describes it.
struct SheetFrame {
    QString name;           ///< may be empty
    QRect place;            ///< on the sheet
    bool isRotated = false; ///< by a quarter turn clockwise
    QSize size;             ///< of the frame
    QPoint offset;          ///< of what the sheet has of it
    int delayMs = 0;        ///< 0 if none is given
};

class SheetReader
{
public:
    SheetReader(const QString &path, Reading &reading)
        : m_path(path)
        , m_reading(reading)
    {
    }

    DecodedFilm read(QFile &file);

private:
    [[noreturn]] void refuse(const QString &reason) const { throw Failure{m_path, reason}; }

    QJsonObject parse(QFile &file) const;
    QVector<SheetFrame> framesOf(const QJsonObject &json) const;
    SheetFrame frameOf(const QJsonObject &json, const QString &name, int number) const;
    QRect rectOf(const QJsonValue &json, const char *key, int number) const;
    QImage readSheet(const QJsonObject &json) const;
    void require(const QVector<SheetFrame> &frames) const;
    QImage cut(const QImage &sheet, const SheetFrame &frame, int number) const;

    const QString m_path;
    Reading &m_reading;
};

QJsonObject SheetReader::parse(QFile &file) const
{
    if (file.size() > MaxJsonBytes)
        refuse(QStringLiteral("larger than %1").arg(MemoryBudget::text(MaxJsonBytes)));
    m_reading.memory().require(MemoryBudget::leastForJson(file.size()), m_path,
                               QStringLiteral("its text"));
    // As much as asked for is allocated at once.
    const QByteArray text = file.read(file.size());
    m_reading.memory().require(MemoryBudget::neededForJson(text), m_path,
                               QStringLiteral("its text"));
    QJsonParseError error = {};
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError)
        refuse(
            QStringLiteral("not JSON: %1 at byte %2").arg(error.errorString()).arg(error.offset));
    return document.object();
}

int numberIn(const QJsonObject &json, const char *key)
{
    const QJsonValue value = json.value(QLatin1String(key));
    const double number = value.toDouble(-1.0);
    // A fraction would be another pixel than meant.
    if (number < 0.0 || number > LongestSide || number != double(int(number)))
        return -1;
    return int(number);
}

/// The rectangle "key" of @p json, or, without x and y, the size.
QRect SheetReader::rectOf(const QJsonValue &json, const char *key, int number) const
{
    const QJsonObject object = json.toObject();
    const bool hasPlace =
        object.contains(QLatin1String("x")) || object.contains(QLatin1String("y"));
    const int x = hasPlace ? numberIn(object, "x") : 0;
    const int y = hasPlace ? numberIn(object, "y") : 0;
    const int width = numberIn(object, "w");
    const int height = numberIn(object, "h");
    if (x < 0 || y < 0 || width < 1 || height < 1)
        refuse(QStringLiteral("\"%1\" of frame %2 is not a rectangle of whole pixels")
                   .arg(QLatin1String(key), QString::number(number)));
    return {x, y, width, height};
}

/// The name of a frame without the ending of a picture's file.
QString plainName(const QString &name)
{
    static const QStringList endings = {
        QStringLiteral("png"), QStringLiteral("jpg"),  QStringLiteral("jpeg"),
        QStringLiteral("gif"), QStringLiteral("bmp"),  QStringLiteral("webp"),
        QStringLiteral("tga"), QStringLiteral("tiff"), QStringLiteral("svg"),
        QStringLiteral("ase"), QStringLiteral("psd"),  QStringLiteral("aseprite")};
    const int dot = name.lastIndexOf(QLatin1Char('.'));
    return dot > 0 && endings.contains(name.mid(dot + 1).toLower()) ? name.left(dot) : name;
}

SheetFrame SheetReader::frameOf(const QJsonObject &json, const QString &name, int number) const
{
    SheetFrame frame;
    frame.name = plainName(name);
    QRect place = rectOf(json.value(QLatin1String("frame")), "frame", number);
    frame.size = place.size();
    const QLatin1String wholeKey("sourceSize");
    const QLatin1String partKey("spriteSourceSize");
    if (json.contains(wholeKey)) {
        frame.size = rectOf(json.value(wholeKey), "sourceSize", number).size();
        if (json.contains(partKey))
            frame.offset = rectOf(json.value(partKey), "spriteSourceSize", number).topLeft();
    }
    if (!QRect(QPoint(0, 0), frame.size).contains(QRect(frame.offset, place.size())))
        refuse(QStringLiteral("frame %1 is larger than its \"sourceSize\"").arg(number));
    frame.isRotated = json.value(QLatin1String("rotated")).toBool();
    if (frame.isRotated)
        place.setSize(place.size().transposed());
    frame.place = place;
    const double ms = json.value(QLatin1String("duration")).toDouble();
    frame.delayMs = int(qBound(0.0, ms, double(std::numeric_limits<int>::max())));
    return frame;
}

QVector<SheetFrame> SheetReader::framesOf(const QJsonObject &json) const
{
    const QJsonValue list = json.value(QLatin1String("frames"));
    QVector<SheetFrame> frames;
    if (list.isArray()) {
        const QJsonArray elements = list.toArray();
        for (const QJsonValue &element : elements) {
            const QJsonObject object = element.toObject();
            const QString name = object.value(QLatin1String("filename")).toString();
            frames.append(frameOf(object, name, frames.size() + 1));
        }
    } else {
        const QJsonObject elements = list.toObject();
        QStringList names = elements.keys();
        sortNaturally(names);
        for (const QString &name : qAsConst(names))
            frames.append(frameOf(elements.value(name).toObject(), name, frames.size() + 1));
    }
    if (frames.isEmpty())
        refuse(QStringLiteral("not the description of a sprite sheet: it has no \"frames\""));
    return frames;
}

QImage SheetReader::readSheet(const QJsonObject &json) const
{
    const QString name =
        json.value(QLatin1String("meta")).toObject().value(QLatin1String("image")).toString();
    if (name.isEmpty())
        refuse(QStringLiteral("it names no picture: \"image\" in \"meta\" is missing"));
    try {
        const FileHandle folder = m_reading.openFolderOf(m_path);
        // With the dot, no name is taken for an absolute path.
        const std::unique_ptr<QFile> file = m_reading.openFrom(folder, QStringLiteral("./") + name);
        return readPicture(*file, name, m_reading.memory());
    } catch (const OverBudget &over) {
        throw OverBudget{{m_path, QStringLiteral("%1: %2").arg(name, over.reason)},
                         over.neededBytes};
    } catch (const Failure &failure) {
        refuse(QStringLiteral("%1: %2").arg(name, failure.reason));
    }
}

void SheetReader::require(const QVector<SheetFrame> &frames) const
{
    qint64 needed = 0;
    for (const SheetFrame &frame : frames) {
        const qint64 pixels = qint64(frame.size.width()) * frame.size.height();
        needed = Saturating::sum(needed, pixels * BytesPerPixel + MemoryBudget::BytesPerFrame);
    }
    m_reading.memory().require(needed, m_path, frameCountText(frames.size()));
    m_reading.memory().take(needed);
}

QImage SheetReader::cut(const QImage &sheet, const SheetFrame &frame, int number) const
{
    if (!sheet.rect().contains(frame.place))
        refuse(QStringLiteral("frame %1 is outside of the picture, which has %2 x %3 pixels")
                   .arg(QString::number(number), QString::number(sheet.width()),
                        QString::number(sheet.height())));
    QImage part = sheet.copy(frame.place);
    if (frame.isRotated)
        part = part.transformed(QTransform().rotate(-90));
    if (part.size() == frame.size)
        return part;
    QImage whole(frame.size, QImage::Format_ARGB32);
    if (whole.isNull())
        refuse(QStringLiteral("frame %1 is too large").arg(number));
    whole.fill(0);
    for (int y = 0; y < part.height(); ++y) {
        const auto *from = reinterpret_cast<const QRgb *>(part.constScanLine(y));
        auto *to = reinterpret_cast<QRgb *>(whole.scanLine(frame.offset.y() + y));
        std::copy_n(from, part.width(), to + frame.offset.x());
    }
    return whole;
}

DecodedFilm SheetReader::read(QFile &file)
{
    const QJsonObject json = parse(file);
    const QVector<SheetFrame> frames = framesOf(json);
    require(frames);
    const QImage sheet = readSheet(json).convertToFormat(QImage::Format_ARGB32);
    DecodedFilm film;
    film.format = QStringLiteral("sprite sheet");
    bool hasDelays = false;
    for (const SheetFrame &frame : frames) {
        film.pictures.append(cut(sheet, frame, film.pictures.size() + 1));
        film.names.append(frame.name);
        film.delaysMs.append(frame.delayMs);
        hasDelays = hasDelays || frame.delayMs > 0;
    }
    if (!hasDelays)
        film.delaysMs.clear();
    std::replace(film.delaysMs.begin(), film.delaysMs.end(), 0, 100);
    if (film.names.contains(QString()))
        film.names.clear();
    else
        makeNamesUnique(film);
    return film;
}

} // namespace

bool mayBeSheetJson(const QByteArray &start)
{
    const QByteArray text = start.startsWith("\xef\xbb\xbf") ? start.mid(3) : start;
    return text.trimmed().startsWith('{');
}

DecodedFilm readSheetJson(QFile &file, const QString &path, Reading &reading)
{
    return SheetReader(path, reading).read(file);
}
