#pragma once

#include "flipbook/object/plugin.h"

#include <QtCore/QByteArray>
#include <QtCore/QVector>

#include <functional>

class MemoryAccount;
class Page;

/// What a web page is made of.
struct WebPageSource {
    QString title;         ///< also the name of objects that have none
    QVector<int> delaysMs; ///< of a lone film: one for each frame; other numbers do not count
    double scale = 1.0;    ///< of both sides of the pictures; objects keep their sizes
};

/// @p page as one HTML file that plays it in a browser and needs nothing else. Objects look and
/// play as in a presentation: each at its place, films by their times and loops, backgrounds as
/// patterns. Each picture is in it once. What it takes is counted in @p memory; @p progress is
/// called with the number of frames done, and of all. The same page always gives the same bytes.
/// @throw Failure, with the title, when there is not enough memory.
QByteArray webPage(const Plugin &plugin, Page &page, const WebPageSource &source,
                   MemoryAccount &memory, const std::function<void(int, int)> &progress = {});
