#pragma once

#include "framework/frameworkglobal.h"

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtGui/QImage>

#include <functional>

/// Makes a file of a picture. Called in other threads.
using PictureEncoder = std::function<QByteArray(const QImage &image)>;

/// The bytes of pictures that encodeAhead() has at work at the same time, unless one alone has
/// more.
constexpr qint64 MostBytesAtWork = qint64(8) << 20;

/// Calls @p encode for each of @p images, for several of them at the same time if the machine can,
/// and hands the number of each with its file to @p take, in their order, until it returns false.
FRAMEWORK_API void encodeAhead(const QList<QImage> &images, const PictureEncoder &encode,
                               const std::function<bool(int index, const QByteArray &file)> &take);
