#include "animatedimage/core/opaquebits.h"

#include <cstddef>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace OpaqueBits
{

namespace
{

constexpr quint64 AllBits = ~quint64(0);
constexpr int PixelsPerWord = 64;
constexpr int MaxBytesPerPixel = 4;

quint64 wordAt(const uchar *bytes)
{
    quint64 word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

/// Calls @p whole for each word of @p line, with the place of 64 pixels and what the word was
/// before.
template<typename WholeWord>
void readWords(const Line &line, quint64 *bits, WholeWord whole)
{
    const qsizetype stride = qsizetype(PixelsPerWord) * line.bytesPerPixel;
    const uchar *at = line.bytes;
    int left = line.width;
    for (; left >= PixelsPerWord; left -= PixelsPerWord, at += stride, ++bits)
        *bits = whole(at, *bits);
    if (left > 0) {
        // Pixels of 0, which are below every threshold, fill up the last word.
        alignas(16) uchar rest[PixelsPerWord * MaxBytesPerPixel] = {};
        std::memcpy(rest, at, size_t(left) * size_t(line.bytesPerPixel));
        *bits = whole(rest, *bits);
    }
}

/// Most pictures have long stretches that are all opaque or all empty: these are found by whole
/// words.
class PortableWord
{
public:
    explicit PortableWord(const Line &line)
        : m_bytesPerPixel(line.bytesPerPixel)
        , m_threshold(line.threshold)
    {
        uchar judged[sizeof(quint64)] = {};
        for (int i = m_bytesPerPixel - 1; i < int(sizeof judged); i += m_bytesPerPixel)
            judged[i] = 0xff;
        m_judged = wordAt(judged);
    }

    quint64 operator()(const uchar *at, quint64 /*guess*/) const
    {
        const int bytes = PixelsPerWord * m_bytesPerPixel;
        quint64 every = AllBits;
        quint64 any = 0;
        for (int i = 0; i < bytes; i += int(sizeof(quint64))) {
            const quint64 word = wordAt(at + i);
            every &= word;
            any |= word;
        }
        if ((any & m_judged) == 0)
            return 0;
        if ((every & m_judged) == m_judged)
            return AllBits;
        return bitsOneByOne(at + m_bytesPerPixel - 1);
    }

private:
    quint64 bitsOneByOne(const uchar *judged) const
    {
        quint64 bits = 0;
        for (int x = 0; x < PixelsPerWord; ++x, judged += m_bytesPerPixel)
            bits |= quint64(*judged >= m_threshold) << x;
        return bits;
    }

    int m_bytesPerPixel;
    int m_threshold;
    quint64 m_judged;
};

#if defined(__SSE2__)

__m128i vectorAt(const uchar *bytes)
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i *>(bytes));
}

/// Tells by the highest bit of each byte whether it reached the threshold.
class Judge
{
public:
    explicit Judge(int threshold)
        : m_up(_mm_set1_epi8(char(threshold < 128 ? 128 - threshold : 0)))
        , m_down(_mm_set1_epi8(char(threshold > 128 ? threshold - 128 : 0)))
    {
    }

    __m128i operator()(__m128i values) const
    {
        return _mm_subs_epu8(_mm_adds_epu8(values, m_up), m_down);
    }

private:
    __m128i m_up;
    __m128i m_down;
};

/// 64 pixels of one byte each.
class VectorByte
{
public:
    explicit VectorByte(const Line &line)
        : m_judge(line.threshold)
    {
    }

    quint64 operator()(const uchar *at, quint64 /*guess*/) const
    {
        quint64 bits = 0;
        for (int i = 0; i < 4; ++i) {
            const int mask = _mm_movemask_epi8(m_judge(vectorAt(at + std::ptrdiff_t(16) * i)));
            bits |= quint64(unsigned(mask)) << (16 * i);
        }
        return bits;
    }

private:
    Judge m_judge;
};

/// 64 pixels of four bytes each. A guess that they are all opaque, or none, is tried first: that
/// takes half of the work.
class VectorPixel
{
public:
    explicit VectorPixel(const Line &line)
        : m_judge(line.threshold)
    {
    }

    quint64 operator()(const uchar *at, quint64 guess) const
    {
        if (guess == 0 && (signs(extreme<_mm_max_epu8>(at)) & JudgedBytes) == 0)
            return 0;
        if (guess == AllBits && (signs(extreme<_mm_min_epu8>(at)) & JudgedBytes) == JudgedBytes)
            return AllBits;
        return bitsAt(at);
    }

private:
    static constexpr int JudgedBytes = 0x8888;

    int signs(__m128i values) const { return _mm_movemask_epi8(m_judge(values)); }

    /// The least or the greatest value of each of the 16 bytes of a vector, among 16 vectors. Four
    /// results at a time, so that none waits for the one before it.
    template<__m128i choose(__m128i, __m128i)>
    static __m128i extreme(const uchar *at)
    {
        __m128i a = vectorAt(at);
        __m128i b = vectorAt(at + 16);
        __m128i c = vectorAt(at + 32);
        __m128i d = vectorAt(at + 48);
        for (int i = 64; i < 256; i += 64) {
            a = choose(a, vectorAt(at + i));
            b = choose(b, vectorAt(at + i + 16));
            c = choose(c, vectorAt(at + i + 32));
            d = choose(d, vectorAt(at + i + 48));
        }
        return choose(choose(a, b), choose(c, d));
    }

    quint64 bitsAt(const uchar *at) const
    {
        quint64 bits = 0;
        for (int i = 0; i < 4; ++i, at += 64) {
            // Packing with saturation keeps the sign, which is the highest bit of the judged byte.
            const __m128i low = _mm_packs_epi32(m_judge(vectorAt(at)), m_judge(vectorAt(at + 16)));
            const __m128i high =
                _mm_packs_epi32(m_judge(vectorAt(at + 32)), m_judge(vectorAt(at + 48)));
            const int mask = _mm_movemask_epi8(_mm_packs_epi16(low, high));
            bits |= quint64(unsigned(mask)) << (16 * i);
        }
        return bits;
    }

    Judge m_judge;
};

#endif

} // namespace

void readPortably(const Line &line, quint64 *bits)
{
    readWords(line, bits, PortableWord(line));
}

void read(const Line &line, quint64 *bits)
{
#if defined(__SSE2__)
    if (line.bytesPerPixel == 1)
        readWords(line, bits, VectorByte(line));
    else
        readWords(line, bits, VectorPixel(line));
#else
    readPortably(line, bits);
#endif
}

} // namespace OpaqueBits
