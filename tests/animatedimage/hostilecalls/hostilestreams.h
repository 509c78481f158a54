#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <functional>

/// The stream form of an object, damaged in one place.
struct HostileStream {
    QString name;
    QByteArray bytes;
    int version;
    bool isInline; ///< whether pictures are where they occur, not in the document's own form
};

/// Counts, lengths, types and pictures that lie, in all combinations. Calls @p visit for each.
void visitHostileStreams(const std::function<void(const HostileStream &)> &visit);
