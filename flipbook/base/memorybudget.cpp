#include "flipbook/base/memorybudget.h"

#include "flipbook/base/saturating.h"

#include <QtCore/QLocale>

#include <algorithm>
#include <limits>

namespace
{

constexpr qint64 BytesPerPixel = 4;

qint64 pictureBytes(const QSize &size)
{
    return Saturating::product(qint64(size.width()) * size.height(), BytesPerPixel);
}

qint64 pictureBytes(const QSizeF &size, double pictures)
{
    const double bytes = size.width() * size.height() * double(BytesPerPixel) * pictures;
    // Written so that NaN counts as the most.
    constexpr qint64 most = std::numeric_limits<qint64>::max();
    return bytes < double(most) / 2.0 ? qint64(bytes) : most;
}

} // namespace

namespace MemoryBudget
{

std::optional<qint64> parse(const QString &text)
{
    QString digits = text;
    int shift = 0;
    if (!text.isEmpty()) {
        const int suffix = QStringLiteral("KMG").indexOf(text.back().toUpper());
        if (suffix >= 0) {
            shift = 10 * (suffix + 1);
            digits.chop(1);
        }
    }
    for (const QChar digit : qAsConst(digits)) {
        if (digit < QLatin1Char('0') || digit > QLatin1Char('9'))
            return std::nullopt;
    }
    bool isNumber = false;
    const qint64 amount = digits.toLongLong(&isNumber);
    if (!isNumber || amount <= 0 || amount > (std::numeric_limits<qint64>::max() >> shift))
        return std::nullopt;
    return amount << shift;
}

QString text(qint64 bytes)
{
    if (bytes == 1)
        return QStringLiteral("1 byte");
    return QLocale::c().formattedDataSize(bytes, 1, QLocale::DataSizeIecFormat);
}

qint64 neededForFilm(const QSize &size, qint64 frames, int workingPictures)
{
    return Saturating::sum(keptForFilm(size, frames),
                           Saturating::product(workingPictures, pictureBytes(size)));
}

qint64 keptForFilm(const QSize &size, qint64 frames)
{
    return Saturating::sum(Saturating::product(frames, pictureBytes(size)),
                           Saturating::product(frames, BytesPerFrame));
}

qint64 keptForTile(const QSizeF &size)
{
    constexpr double repetitions = 4.0;
    return pictureBytes(size, repetitions);
}

qint64 forTileAtWork(const QSizeF &size)
{
    // The tile before, the scaled picture, and one more where it is brought to that size.
    constexpr double pictures = 6.0;
    return pictureBytes(size, pictures);
}

qint64 leastForJson(qint64 size)
{
    // The text itself, its values, and a picture in it that is brought to its bytes.
    constexpr qint64 bytesPerByte = 6;
    return Saturating::product(size, bytesPerByte);
}

qint64 neededForJson(const QByteArray &text)
{
    // Measured, of lists, objects and texts within each other, and rounded up.
    constexpr qint64 bytesPerValue = 64;
    constexpr qint64 bytesPerContainer = 128;
    const auto count = [&text](char mark) {
        return qint64(std::count(text.begin(), text.end(), mark));
    };
    return leastForJson(text.size()) + (count(',') + count(':')) * bytesPerValue +
           (count('[') + count('{')) * bytesPerContainer;
}

} // namespace MemoryBudget
