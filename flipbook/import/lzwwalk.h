#pragma once

#include <QtCore/QtGlobal>

#include <array>

/// Walks through the compressed picture data of a GIF frame and counts the pixels that they
/// represent, without producing them: enough to know whether the data are valid.
class LzwWalk
{
public:
    /// Whether decoders read frames that announce their codes with this size.
    static bool accepts(int minimumCodeSize);
    /// Whether the format allows the size, or a decoder at least expects it.
    static bool isUsual(int minimumCodeSize);

    /// @p minimumCodeSize must be one that accepts() allows. Nothing is read any more once
    /// @p wantedPixels have been counted.
    LzwWalk(int minimumCodeSize, qint64 wantedPixels);

    /// Goes on with the next @p count bytes.
    void feed(const uchar *bytes, int count);

    qint64 pixels() const { return m_state.pixels; }     ///< counted so far
    bool hasPixelCode() const { return m_hasPixelCode; } ///< a code for pixels, sound or not
    bool isDamaged() const { return m_damaged; }         ///< a code occurred that means nothing yet

private:
    static constexpr int MaxCodes = 4096;
    static constexpr uint Together = 4; ///< codes of any size that 56 bits have

    /// What changes with each code.
    struct State {
        quint64 bits = 0; ///< of the data, those that come first in the lowest places
        int bitCount = 0;
        int codeSize = 0;
        int nextCode = 0;
        int previousLength = 0; ///< pixels of the code before; 0 after a restart
        qint64 pixels = 0;
    };

    void restart(State &state);
    const uchar *walkOn(State &walked, const uchar *bytes, const uchar *end);
    template<uint Step>
    const uchar *takeFours(State &state, int limit, const uchar *bytes, const uchar *end);
    bool takePixelCode(State &state);
    void takeCode(State &state);
    void addEntry(State &state);

    const int m_minimumCodeSize;
    const qint64 m_wantedPixels;
    State m_state;
    bool m_hasPixelCode = false;
    bool m_damaged = false;
    bool m_ended = false;
    /// In pixels; 0 of codes that mean no pixels. One place more, for what comes when the table is
    /// full.
    std::array<quint16, MaxCodes + 1> m_lengths{};
};
