#pragma once

#include "flipbook/export/gif/gifframe.h"

struct GifFileType;

/// A GIF that is written into memory.
class GifFile
{
public:
    /// @p repetitions after the first pass, -1 for forever; none for a picture that stands still.
    /// The palette has room for indices below @p indices. @throw std::bad_alloc
    GifFile(const QSize &size, const QVector<QRgb> &palette, int indices,
            std::optional<int> repetitions);
    ~GifFile();

    /// Adds a frame that is shown for @p centiseconds. @throw std::bad_alloc
    void add(const GifFrame &frame, int centiseconds);

    qint64 byteCount() const { return m_bytes.size(); }

    /// The whole file. Nothing can be added afterwards. @throw std::bad_alloc
    QByteArray finished();

private:
    Q_DISABLE_COPY(GifFile)

    void addRepetitions(int repetitions);
    void addControl(const GifFrame &frame, int centiseconds);

    QByteArray m_bytes;
    GifFileType *m_file = nullptr;
    int m_commonBits = 1;
};
