#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QStringList>

#include <functional>

/// A film as the bytes of a file.
struct WrittenFilm {
    QByteArray bytes;
    /// What the user should know about it; clauses without a full stop.
    QStringList remarks;
};

/// Hears how many steps of how many are done. What it throws ends the work.
using FilmProgress = std::function<void(int done, int all)>;
