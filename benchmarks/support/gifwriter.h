#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtGui/QImage>

/// Writes a GIF frame by frame, compressed as such files are. Colours become the nearest ones of a
/// cube of 6 x 6 x 6; pixels of less than half alpha become transparent.
class GifWriter
{
public:
    /// A film that loops forever.
    GifWriter(const QString &path, const QSize &size);
    /// Writes the file; ends the program when that fails.
    ~GifWriter();
    Q_DISABLE_COPY(GifWriter)

    void add(const QImage &frame, int delayCs = 4);

private:
    QString m_path;
    QByteArray m_bytes;
};
