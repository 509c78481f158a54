#include "tests/flipbook/slowlzwwalk.h"

namespace
{

constexpr int maxCodeSize = 12;

} // namespace

SlowLzwWalk::SlowLzwWalk(int minimumCodeSize, qint64 wantedPixels)
    : m_minimumCodeSize(minimumCodeSize)
    , m_wantedPixels(wantedPixels)
{
    restart();
}

void SlowLzwWalk::restart()
{
    m_codeSize = m_minimumCodeSize + 1;
    m_nextCode = (1 << m_minimumCodeSize) + 2;
    m_previousLength = 0;
}

void SlowLzwWalk::feed(const uchar *bytes, int count)
{
    for (int i = 0; i < count && !isOver(); ++i) {
        m_bits |= quint32(bytes[i]) << m_bitCount;
        m_bitCount += 8;
        while (m_bitCount >= m_codeSize && !isOver()) {
            const int code = int(m_bits & ((1u << m_codeSize) - 1u));
            m_bits >>= m_codeSize;
            m_bitCount -= m_codeSize;
            takeCode(code);
        }
    }
}

// Bits that come later are not even collected: there would be no end of them.
bool SlowLzwWalk::isOver() const
{
    return m_ended || m_damaged || m_pixels >= m_wantedPixels;
}

void SlowLzwWalk::takeCode(int code)
{
    const int clearCode = 1 << m_minimumCodeSize;
    if (code == clearCode) {
        restart();
        return;
    }
    if (code == clearCode + 1) {
        m_ended = true;
        return;
    }
    m_hasPixelCode = true;
    const bool isPixel = code < clearCode;
    int length = 1;
    if (!isPixel) {
        // The newest code may refer to itself: the code before and its own first pixel.
        const bool isNewest = code == m_nextCode && m_nextCode < MaxCodes;
        if (m_previousLength == 0 || (code >= m_nextCode && !isNewest)) {
            m_damaged = true;
            return;
        }
        length = isNewest ? m_previousLength + 1 : m_lengths[std::size_t(code)];
    }
    m_pixels += length;
    if (m_previousLength > 0)
        addEntry(m_previousLength + 1);
    m_previousLength = length;
}

void SlowLzwWalk::addEntry(int length)
{
    if (m_nextCode >= MaxCodes)
        return;
    m_lengths[std::size_t(m_nextCode)] = quint16(length);
    ++m_nextCode;
    if (m_nextCode == (1 << m_codeSize) && m_codeSize < maxCodeSize)
        ++m_codeSize;
}
