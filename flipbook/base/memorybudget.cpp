#include "flipbook/base/memorybudget.h"

#include <QtCore/QLocale>

#include <limits>

namespace
{

constexpr qint64 BytesPerPixel = 4;

// Name, records and bookkeeping of one frame: what a film of ten million dots takes.
constexpr qint64 BytesPerFrameRecord = 1024;

qint64 saturatingProduct(qint64 a, qint64 b)
{
    qint64 product = 0;
    return __builtin_mul_overflow(a, b, &product) ? std::numeric_limits<qint64>::max() : product;
}

qint64 saturatingSum(qint64 a, qint64 b)
{
    qint64 sum = 0;
    return __builtin_add_overflow(a, b, &sum) ? std::numeric_limits<qint64>::max() : sum;
}

qint64 pictureBytes(const QSize &size)
{
    return qint64(size.width()) * qint64(size.height()) * BytesPerPixel;
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
    return saturatingSum(keptForFilm(size, frames),
                         saturatingProduct(workingPictures, pictureBytes(size)));
}

qint64 keptForFilm(const QSize &size, qint64 frames)
{
    return saturatingSum(saturatingProduct(frames, pictureBytes(size)),
                         saturatingProduct(frames, BytesPerFrameRecord));
}

qint64 neededForPicture(qint64 width, qint64 height)
{
    // The decoder's picture and the copy that the object keeps.
    return saturatingProduct(saturatingProduct(width, height), 2 * BytesPerPixel);
}

} // namespace MemoryBudget
