#include "flipbook/export/gif/lzwencoder.h"

#include <algorithm>
#include <array>

namespace LzwEncoder
{

namespace
{

constexpr int MaxCodeBits = 12;
constexpr int MaxCodes = 1 << MaxCodeBits;
/// Of runs that are followed at once. There are more only where a picture has next to no colours.
constexpr int MostRuns = 32;

/// Which run follows another one by one symbol: a hash table with open addressing.
class RunTable
{
public:
    RunTable() { clear(); }

    void clear() { m_keys.fill(Empty); }

    /// -1 when there is none.
    int find(int run, int symbol) const
    {
        const quint32 key = keyOf(run, symbol);
        for (quint32 at = place(key);; at = (at + 1) % Places) {
            if (m_keys[at] == key)
                return m_codes[at];
            if (m_keys[at] == Empty)
                return -1;
        }
    }

    /// Of a run that is not there.
    void insert(int run, int symbol, int code)
    {
        const quint32 key = keyOf(run, symbol);
        quint32 at = place(key);
        while (m_keys[at] != Empty)
            at = (at + 1) % Places;
        m_keys[at] = key;
        m_codes[at] = quint16(code);
    }

private:
    static constexpr quint32 Places = 4 * MaxCodes;
    static constexpr quint32 Empty = 0xffffffff;

    static quint32 keyOf(int run, int symbol) { return (quint32(run) << 8) | quint32(symbol); }
    static quint32 place(quint32 key) { return (key * 2654435761U) >> 18; }

    std::array<quint32, Places> m_keys;
    std::array<quint16, Places> m_codes;
};

/// Collects codes of a growing number of bits, the lowest bit first.
class BitStream
{
public:
    void put(int code, int bits)
    {
        m_pending |= quint32(code) << m_pendingBits;
        for (m_pendingBits += bits; m_pendingBits >= 8; m_pendingBits -= 8) {
            m_bytes.append(char(m_pending & 0xff));
            m_pending >>= 8;
        }
    }

    QByteArray finished()
    {
        if (m_pendingBits > 0)
            m_bytes.append(char(m_pending & 0xff));
        return m_bytes;
    }

    qint64 bitCount() const { return qint64(m_bytes.size()) * 8 + m_pendingBits; }

private:
    QByteArray m_bytes;
    quint32 m_pending = 0;
    int m_pendingBits = 0;
};

/// A run of pixels that the table has.
struct Run {
    int code = -1;
    int length = 0;
};

class Encoder
{
public:
    Encoder(const QVector<Choice> &pixels, int symbolBits, Preference preference,
            Emptying emptying);

    QByteArray encode();

private:
    void empty();
    void put(int code, int symbol);
    int following(int run, int symbol, int first) const;
    Run longestRun(int begin, int symbol) const;
    Run nextRun(int begin, int &symbol) const;
    bool isToBeEmptied();
    bool isWorse();

    const QVector<Choice> &m_pixels;
    const int m_symbolBits;
    const int m_clearCode;
    const Preference m_preference;
    const Emptying m_emptying;
    RunTable m_table;
    BitStream m_stream;
    int m_codeBits = 0;
    int m_nextCode = 0;
    int m_lastCode = -1; ///< the run that was written last; -1 after the table was emptied

    // Since the table was emptied, and since the last look at how good it is.
    qint64 m_bitsThen = 0;
    int m_pixelsThen = 0;
    qint64 m_bitsAtLook = 0;
    int m_pixelsAtLook = 0;
    int m_position = 0;
    bool m_isFull = false;
};

Encoder::Encoder(const QVector<Choice> &pixels, int symbolBits, Preference preference,
                 Emptying emptying)
    : m_pixels(pixels)
    , m_symbolBits(symbolBits)
    , m_clearCode(1 << symbolBits)
    , m_preference(preference)
    , m_emptying(emptying)
{
}

void Encoder::empty()
{
    if (m_codeBits == 0)
        m_codeBits = m_symbolBits + 1;
    m_stream.put(m_clearCode, m_codeBits);
    m_table.clear();
    m_codeBits = m_symbolBits + 1;
    m_nextCode = m_clearCode + 2;
    m_lastCode = -1;
    m_bitsThen = m_stream.bitCount();
    m_pixelsThen = m_position;
    m_isFull = false;
}

/// Writes a run that begins with @p symbol. The table then has the run before it with that symbol
/// after it, as that of the reader does.
void Encoder::put(int code, int symbol)
{
    m_stream.put(code, m_codeBits);
    if (m_lastCode >= 0 && m_nextCode < MaxCodes) {
        if (m_table.find(m_lastCode, symbol) < 0)
            m_table.insert(m_lastCode, symbol, m_nextCode);
        ++m_nextCode;
    }
    if (m_nextCode >= 1 << m_codeBits && m_codeBits < MaxCodeBits)
        ++m_codeBits;
    m_lastCode = code;
}

/// The run that follows @p run by @p symbol, of a run that begins with @p first: also the one that
/// the table gets only when this run is written.
int Encoder::following(int run, int symbol, int first) const
{
    const int code = m_table.find(run, symbol);
    if (code < 0 && run == m_lastCode && symbol == first && m_nextCode < MaxCodes)
        return m_nextCode;
    return code;
}

/// The longest run of the table that can be written from @p begin on, with @p symbol first.
Run Encoder::longestRun(int begin, int symbol) const
{
    std::array<int, MostRuns> runs;
    std::array<int, MostRuns> longer;
    int count = 1;
    runs[0] = symbol;
    int length = 1;
    for (; begin + length < m_pixels.size(); ++length) {
        const Choice &choice = m_pixels.at(begin + length);
        int found = 0;
        for (int i = 0; i < count; ++i) {
            for (const int next : {int(choice.colour), int(choice.transparent)}) {
                const int code = next < 0 || found == MostRuns
                                     ? -1
                                     : following(runs[std::size_t(i)], next, symbol);
                if (code >= 0)
                    longer[std::size_t(found++)] = code;
            }
        }
        if (found == 0)
            break;
        std::swap(runs, longer);
        count = found;
    }
    return {runs[0], length};
}

/// The run from @p begin on that is written next; @p symbol becomes its first one.
Run Encoder::nextRun(int begin, int &symbol) const
{
    const Choice &choice = m_pixels.at(begin);
    std::array<int, 2> order = {choice.colour, choice.transparent};
    if (m_preference == Preference::Transparent)
        std::swap(order[0], order[1]);
    Run best;
    for (const int first : order) {
        if (first < 0)
            continue;
        const Run run = longestRun(begin, first);
        if (run.length > best.length) {
            best = run;
            symbol = first;
        }
    }
    return best;
}

/// Whether the full table has lately served worse than on the whole since it was emptied.
bool Encoder::isWorse()
{
    constexpr int pixelsPerLook = 4096;
    if (m_position - m_pixelsAtLook < pixelsPerLook)
        return false;
    const qint64 bits = m_stream.bitCount();
    const double lately = double(bits - m_bitsAtLook) / (m_position - m_pixelsAtLook);
    const double onTheWhole = double(bits - m_bitsThen) / (m_position - m_pixelsThen);
    m_bitsAtLook = bits;
    m_pixelsAtLook = m_position;
    return lately > onTheWhole;
}

bool Encoder::isToBeEmptied()
{
    if (m_nextCode < MaxCodes || m_emptying == Emptying::Never)
        return false;
    if (m_emptying == Emptying::WhenFull)
        return true;
    if (!m_isFull) {
        m_isFull = true;
        m_bitsAtLook = m_stream.bitCount();
        m_pixelsAtLook = m_position;
    }
    return isWorse();
}

QByteArray Encoder::encode()
{
    empty();
    while (m_position < m_pixels.size()) {
        int symbol = -1;
        const Run run = nextRun(m_position, symbol);
        put(run.code, symbol);
        m_position += run.length;
        if (m_position < m_pixels.size() && isToBeEmptied())
            empty();
    }
    m_stream.put(m_clearCode + 1, m_codeBits);
    return m_stream.finished();
}

bool keepShorter(QByteArray &best, const QByteArray &other)
{
    if (other.size() >= best.size())
        return false;
    best = other;
    return true;
}

/// @p pixels with no more than one symbol each: the colour where there is one.
QVector<Choice> coloursOnly(const QVector<Choice> &pixels)
{
    QVector<Choice> plain = pixels;
    for (Choice &choice : plain) {
        if (choice.colour >= 0)
            choice.transparent = -1;
    }
    return plain;
}

} // namespace

QByteArray encoded(const QVector<Choice> &pixels, int symbolBits, Preference preference,
                   Emptying emptying)
{
    return Encoder(pixels, symbolBits, preference, emptying).encode();
}

QByteArray shortest(const QVector<Choice> &pixels, int symbolBits)
{
    const auto isOpen = [](const Choice &choice) {
        return choice.colour >= 0 && choice.transparent >= 0;
    };
    QVector<Choice> source = pixels;
    Preference preference = Preference::Colour;
    QByteArray best = encoded(source, symbolBits, preference, Emptying::WhenWorse);
    if (std::any_of(pixels.begin(), pixels.end(), isOpen)) {
        if (keepShorter(best,
                        encoded(pixels, symbolBits, Preference::Transparent, Emptying::WhenWorse)))
            preference = Preference::Transparent;
        const QVector<Choice> plain = coloursOnly(pixels);
        if (keepShorter(best, encoded(plain, symbolBits, preference, Emptying::WhenWorse)))
            source = plain;
    }
    // A table that never becomes full is never emptied.
    if (best.size() * 8 > MaxCodes * (symbolBits + 1)) {
        keepShorter(best, encoded(source, symbolBits, preference, Emptying::WhenFull));
        keepShorter(best, encoded(source, symbolBits, preference, Emptying::Never));
    }
    return best;
}

} // namespace LzwEncoder
