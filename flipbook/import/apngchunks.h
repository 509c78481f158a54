#pragma once

#include "flipbook/import/filmcanvas.h"

#include <QtCore/QByteArray>
#include <QtCore/QRect>
#include <QtCore/QString>
#include <QtCore/QVector>

class QIODevice;

/// A frame of an APNG file, as its chunks describe it.
struct ApngFrame {
    QRect place; ///< on the canvas
    int delayMs = 0;
    FilmCanvas::Blend blend = FilmCanvas::Blend::Source;
    FilmCanvas::Disposal disposal = FilmCanvas::Disposal::Keep;
    /// The compressed bytes of its picture, in several pieces of the file.
    struct Piece {
        int offset;
        int length;
    };
    QVector<Piece> pieces;
};

/// The description of an animated PNG file in its chunks, read without decoding a pixel. libpng
/// knows nothing of animations: it reads the pictures that are assembled from these chunks.
struct ApngChunks {
    QSize canvas;
    bool isDeep = false;       ///< with 16 bits for each value
    quint32 announced = 0;     ///< the number of frames that the file says it has
    quint32 plays = 0;         ///< 0 is forever
    QVector<ApngFrame> frames; ///< those that are whole
    /// What every frame needs: the 13 bytes of the header, and the chunks for palette and
    /// transparency.
    QByteArray header;
    QByteArray colours;
    /// Why the frames end before the file does; empty if they do not.
    QString damage;

    /// Whether the PNG file on @p device says before its picture that it is animated.
    static bool announces(QIODevice &device);

    /// Reads the chunks of a PNG file that announces() an animation, of any bytes.
    static ApngChunks read(const QByteArray &file);
};

/// A chunk of a PNG file with its length and check sum.
QByteArray pngChunk(const char *type, const QByteArray &content);
