#pragma once

#include "flipbook/object/plugin.h"
#include "framework/page.h"

#include <QtCore/QStringList>

/// What an object in a saved document is like, read into values that tests can compare.
struct ObjectState {
    /// Name, colour and size of each frame, such as "film_1 #ff0000 4x3". The colour is "clear"
    /// where every pixel is transparent, and "mixed" where pixels differ.
    QStringList frames;
    /// The cache keys of the pictures: frames that share their pixels have the same.
    QVector<qint64> pixels;
    int intervalMs = 0;
    int loopCount = 0;
    int type = -1; ///< 0 normal, 1 background
    Page::Layer layer = Page::Layer::Normal;
    bool mirrored = false;
    bool flipped = false;
    QPointF position;
    QSizeF size; ///< on the page
};

/// Reads the object @p number, counted from 1 through all pages, of the document at @p path.
/// Throws Failure when the document cannot be read.
ObjectState objectIn(const Plugin &plugin, const QString &path, int number = 1);
