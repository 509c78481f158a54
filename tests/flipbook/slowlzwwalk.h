#pragma once

#include <QtCore/QtGlobal>

#include <array>

/// LzwWalk as it is easiest to read: one bit of the data after the other, one code after the other.
class SlowLzwWalk
{
public:
    /// @p minimumCodeSize must be one that LzwWalk::accepts(). Nothing is read any more once
    /// @p wantedPixels have been counted.
    SlowLzwWalk(int minimumCodeSize, qint64 wantedPixels);

    /// Goes on with the next @p count bytes.
    void feed(const uchar *bytes, int count);

    qint64 pixels() const { return m_pixels; }           ///< counted so far
    bool hasPixelCode() const { return m_hasPixelCode; } ///< a code for pixels, sound or not
    bool isDamaged() const { return m_damaged; }         ///< a code occurred that means nothing yet

private:
    static constexpr int MaxCodes = 4096;

    bool isOver() const;
    void takeCode(int code);
    void restart();
    void addEntry(int length);

    const int m_minimumCodeSize;
    const qint64 m_wantedPixels;
    qint64 m_pixels = 0;
    bool m_hasPixelCode = false;
    bool m_damaged = false;
    bool m_ended = false;
    quint32 m_bits = 0;
    int m_bitCount = 0;
    int m_codeSize = 0;
    int m_nextCode = 0;
    int m_previousLength = 0; ///< pixels of the code before; 0 after a restart
    std::array<quint16, MaxCodes> m_lengths = {};
};
