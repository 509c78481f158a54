#pragma once

#include <QtCore/QStringList>
#include <QtCore/QVector>
#include <QtGui/QImage>

class MemoryAccount;

/// A film that flipbook decoded itself, for an object that cannot read its file.
struct DecodedFilm {
    QString format;           ///< as people call it, such as "APNG"
    QVector<QImage> pictures; ///< at least one
    QStringList names;        ///< one for each picture; none if they are to be numbered
    QVector<int> delaysMs;    ///< one for each picture; none if the file gives none
    int loopCount = -1;       ///< repetitions after the first pass; -1 is forever
    QStringList warnings;     ///< clauses without a full stop
};

/// The time for which a frame is shown whose file says @p ms, in milliseconds: as in browsers, up
/// to 10 ms counts as 100 ms.
int shownMs(int ms);

/// "1 frame", "2 frames" and so on.
QString frameCountText(qint64 frames);

/// Makes sure that there is room for @p frames frames of @p size pixels, for @p workingPictures
/// more and for @p otherBytes. @throw OverBudget of @p path
void requireFilm(const MemoryAccount &memory, const QString &path, const QSize &size, qint64 frames,
                 int workingPictures, qint64 otherBytes);
