#include "flipbook/import/lzwwalk.h"

#include <QtCore/QtEndian>

#include <algorithm>

namespace
{

constexpr int MaxCodeSize = 12;

/// Fills @p bits, of which there are @p count, from @p bytes on, as far as they go up to @p end and
/// have room; the first byte that had not.
const uchar *refill(quint64 &bits, int &count, const uchar *bytes, const uchar *end)
{
    constexpr int wordBytes = 8;
    if (end - bytes >= wordBytes) {
        // All bits of the word, of which those beyond the whole bytes are put in again later.
        bits |= qFromLittleEndian<quint64>(bytes) << count;
        const int taken = (63 - count) / 8;
        count += taken * 8;
        return bytes + taken;
    }
    for (; bytes < end && count <= 56; ++bytes, count += 8)
        bits |= quint64(*bytes) << count;
    return bytes;
}

} // namespace

bool LzwWalk::accepts(int minimumCodeSize)
{
    return minimumCodeSize >= 0 && minimumCodeSize <= MaxCodeSize;
}

bool LzwWalk::isUsual(int minimumCodeSize)
{
    return minimumCodeSize >= 1 && minimumCodeSize <= 8;
}

LzwWalk::LzwWalk(int minimumCodeSize, qint64 wantedPixels)
    : m_minimumCodeSize(minimumCodeSize)
    , m_wantedPixels(wantedPixels)
{
    std::fill_n(m_lengths.begin(), 1 << minimumCodeSize, quint16(1));
    restart(m_state);
}

void LzwWalk::restart(State &state)
{
    // Only what was entered: data may consist of nothing but clear codes.
    const int first = 1 << m_minimumCodeSize;
    const int end = std::min(state.nextCode, int(MaxCodes));
    if (first < end)
        std::fill(m_lengths.begin() + first, m_lengths.begin() + end, quint16(0));
    state.codeSize = m_minimumCodeSize + 1;
    state.nextCode = (1 << m_minimumCodeSize) + 2;
    state.previousLength = 0;
}

void LzwWalk::feed(const uchar *bytes, int count)
{
    const uchar *const end = bytes + count;
    // A film has tens of millions of codes: what changes with each is in registers meanwhile.
    State state = m_state;
    // Bits that come after the end are not even collected: there would be none of them.
    while (!m_ended && !m_damaged && state.pixels < m_wantedPixels) {
        if (state.previousLength > 0 && m_minimumCodeSize < MaxCodeSize)
            bytes = walkOn(state, bytes, end);
        if (state.bitCount < state.codeSize)
            bytes = refill(state.bits, state.bitCount, bytes, end);
        if (state.bitCount < state.codeSize)
            break;
        if (state.pixels < m_wantedPixels)
            takeCode(state);
    }
    m_state = state;
}

/// Takes codes of pixels, up to one that is something else or the end of the bytes; the first byte
/// that is not taken. A code of pixels was before.
const uchar *LzwWalk::walkOn(State &walked, const uchar *bytes, const uchar *end)
{
    State state = walked;
    bool goesOn = true;
    while (goesOn && state.pixels < m_wantedPixels) {
        // The number with which the next code has one bit more. Codes that begin beyond it keep
        // their size, and so do all once the table is full.
        const int mask = (1 << state.codeSize) - 1;
        const bool canGrow = state.codeSize < MaxCodeSize && state.nextCode <= mask;
        const int growing = canGrow ? mask + 1 : MaxCodes + 1;
        if (state.nextCode < MaxCodes)
            bytes = takeFours<1>(state, std::min(growing, int(MaxCodes)), bytes, end);
        else
            bytes = takeFours<0>(state, MaxCodes + Together, bytes, end);
        if (state.nextCode != growing) {
            if (state.bitCount < state.codeSize)
                bytes = refill(state.bits, state.bitCount, bytes, end);
            goesOn = state.bitCount >= state.codeSize && takePixelCode(state);
        }
        if (state.nextCode == growing)
            ++state.codeSize;
    }
    walked = state;
    return bytes;
}

/// Takes codes of pixels, four at a time, as long as nothing else can be among them: @p limit is
/// not passed by the number of the next code, to which each adds @p Step, nor is the last pixel
/// reached.
template<uint Step>
const uchar *LzwWalk::takeFours(State &state, int limit, const uchar *bytes, const uchar *end)
{
    const int size = state.codeSize;
    const uint mask = (1u << size) - 1u;
    const uint lastBegin = uint(limit) - Together;
    const uchar *const lastWord = end - sizeof(quint64);
    quint16 *const lengths = m_lengths.data();
    qint64 wanted = m_wantedPixels - state.pixels;
    quint64 bits = state.bits;
    int bitCount = state.bitCount;
    uint next = uint(state.nextCode);
    uint length = uint(state.previousLength);
    while (next <= lastBegin && bytes <= lastWord) {
        quint64 rest = bits | qFromLittleEndian<quint64>(bytes) << bitCount;
        const uint before = length;
        const qint64 wantedBefore = wanted;
        uint i = 0;
        for (; i < Together; ++i) {
            // The newest code may refer to itself: the code before and its own first pixel.
            lengths[next + i * Step] = quint16(length + 1);
            length = lengths[uint(rest) & mask];
            rest >>= size;
            wanted -= length;
            if (length == 0)
                break;
        }
        if (i < Together || wanted <= 0) {
            std::fill_n(lengths + next, Together * Step, quint16(0));
            length = before;
            wanted = wantedBefore;
            break;
        }
        const int taken = (63 - bitCount) / 8;
        bytes += taken;
        bitCount += taken * 8 - int(Together) * size;
        bits = rest;
        next += Together * Step;
    }
    state.bits = bits;
    state.bitCount = bitCount;
    state.nextCode = int(next);
    state.previousLength = int(length);
    state.pixels = m_wantedPixels - wanted;
    return bytes;
}

/// Takes one code of pixels, for which there are enough bits; false if it is something else.
bool LzwWalk::takePixelCode(State &state)
{
    const uint code = uint(state.bits) & ((1u << state.codeSize) - 1u);
    quint16 &newest = m_lengths[size_t(state.nextCode)];
    newest = quint16(state.previousLength + 1);
    if (m_lengths[code] == 0) {
        newest = 0;
        return false;
    }
    state.bits >>= state.codeSize;
    state.bitCount -= state.codeSize;
    state.previousLength = m_lengths[code];
    state.pixels += state.previousLength;
    state.nextCode += state.nextCode < MaxCodes ? 1 : 0;
    return true;
}

/// Takes a code of any kind.
void LzwWalk::takeCode(State &state)
{
    const int code = int(state.bits & ((1u << state.codeSize) - 1u));
    state.bits >>= state.codeSize;
    state.bitCount -= state.codeSize;
    const int clearCode = 1 << m_minimumCodeSize;
    if (code == clearCode) {
        restart(state);
        return;
    }
    if (code == clearCode + 1) {
        m_ended = true;
        return;
    }
    m_hasPixelCode = true;
    int length = 1;
    if (code > clearCode) {
        const bool isNewest = code == state.nextCode && state.nextCode < MaxCodes;
        if (state.previousLength == 0 || (code >= state.nextCode && !isNewest)) {
            m_damaged = true;
            return;
        }
        length = isNewest ? state.previousLength + 1 : m_lengths[size_t(code)];
    }
    state.pixels += length;
    if (state.previousLength > 0)
        addEntry(state);
    state.previousLength = length;
}

/// A new code means the pixels of the code before, and one more.
void LzwWalk::addEntry(State &state)
{
    if (state.nextCode >= MaxCodes)
        return;
    m_lengths[size_t(state.nextCode)] = quint16(state.previousLength + 1);
    ++state.nextCode;
    if (state.nextCode == (1 << state.codeSize) && state.codeSize < MaxCodeSize)
        ++state.codeSize;
}
