#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QVector>

/// The frames of an animated WebP, cut into files of fewer frames. libwebp looks for each frame
/// from the first one on, so that its time grows with the square of their number.
class WebpGroups
{
public:
    /// @p file must outlive the groups. Each but the last has @p framesOfAGroup frames.
    WebpGroups(const QByteArray &file, int framesOfAGroup);

    int count() const { return (m_starts.size() + m_framesOfAGroup - 1) / m_framesOfAGroup; }
    /// The group with number @p index, from 0, as a file. The last one is as truncated as the
    /// whole file.
    QByteArray group(int index) const;

private:
    const QByteArray &m_file;
    int m_framesOfAGroup;
    QByteArray m_header;   ///< the chunks that describe the film
    QVector<int> m_starts; ///< of the chunks of the frames
    int m_end = 0;         ///< of what there is of the chunks
    qint64 m_missing = 0;  ///< bytes at the end
};
