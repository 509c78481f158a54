#include "flipbook/base/crc32.h"

#include <array>

namespace
{

constexpr quint32 ReversedPolynomial = 0xedb88320u;

std::array<quint32, 256> makeTable()
{
    std::array<quint32, 256> table = {};
    for (quint32 byte = 0; byte < table.size(); ++byte) {
        quint32 rest = byte;
        for (int bit = 0; bit < 8; ++bit)
            rest = (rest & 1) ? (rest >> 1) ^ ReversedPolynomial : rest >> 1;
        table[byte] = rest;
    }
    return table;
}

} // namespace

quint32 crc32(const QByteArray &bytes)
{
    static const std::array<quint32, 256> table = makeTable();
    quint32 rest = 0xffffffffu;
    for (const char byte : bytes)
        rest = table[(rest ^ quint8(byte)) & 0xff] ^ (rest >> 8);
    return ~rest;
}
