#pragma once

#include <QtCore/QPoint>
#include <QtCore/QSize>
#include <QtCore/QVector>

#include <optional>

/// Where rectangles are on a sheet without gaps that matter.
struct AtlasLayout {
    QSize size;
    QVector<QPoint> places; ///< of the top left corners, in the order of the sizes
};

/// The longest side of a sheet, which the graphics processors of today take as a texture.
constexpr int MaxAtlasSide = 16384;

/// Packs rectangles of @p sizes, one or more, none of them empty, onto a sheet that is as small
/// and as nearly square as can be found. Nothing when they do not fit onto the largest one.
std::optional<AtlasLayout> layOutAtlas(const QVector<QSize> &sizes);
