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

void LzwWalk::restart(State &state) const
{
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

/// Takes codes of pixels, one after the other, up to one that is something else or the end of the
/// bytes; the first byte that is not taken. A code of pixels was before.
const uchar *LzwWalk::walkOn(State &walked, const uchar *bytes, const uchar *end)
{
    State state = walked;
    const uint clearCode = 1u << m_minimumCodeSize;
    const qint64 wanted = m_wantedPixels;
    quint16 *const lengths = m_lengths.data();
    bool goesOn = true;
    while (goesOn && state.pixels < wanted) {
        const uint mask = (1u << state.codeSize) - 1u;
        // The number with which the next code has one bit more. Those that begin beyond it keep
        // their size, and so do all once the table is full.
        const bool canGrow = state.codeSize < MaxCodeSize && uint(state.nextCode) <= mask;
        const int growing = canGrow ? int(mask) + 1 : MaxCodes + 1;
        while (state.pixels < wanted && state.nextCode != growing) {
            if (state.bitCount < state.codeSize) {
                // Copies, so that the state itself need not be in memory.
                quint64 bits = state.bits;
                int bitCount = state.bitCount;
                bytes = refill(bits, bitCount, bytes, end);
                state.bits = bits;
                state.bitCount = bitCount;
                goesOn = bitCount >= state.codeSize;
            }
            const uint code = uint(state.bits) & mask;
            // The newest code may refer to itself: the code before and its own first pixel. If the
            // table is full, this is a place after its end.
            lengths[state.nextCode] = quint16(state.previousLength + 1);
            goesOn = goesOn && code <= uint(state.nextCode) && code - clearCode >= 2;
            if (!goesOn)
                break;
            state.bits >>= state.codeSize;
            state.bitCount -= state.codeSize;
            state.previousLength = lengths[code];
            state.pixels += state.previousLength;
            state.nextCode += state.nextCode < MaxCodes ? 1 : 0;
        }
        if (state.nextCode == growing)
            ++state.codeSize;
    }
    walked = state;
    return bytes;
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
