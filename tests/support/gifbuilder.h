#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QRect>
#include <QtCore/QVector>
#include <QtGui/QColor>

#include <functional>

/// Builds small GIF files in memory for tests: frames of one palette colour each.
class GifBuilder
{
public:
    enum Disposal { Unspecified = 0, Keep = 1, RestoreBackground = 2, RestorePrevious = 3 };

    struct Frame {
        QRect rect;         ///< the position of the frame on the screen
        int colorIndex = 0; ///< palette index of all its pixels, 0 to 3
        int delayCs = 10;   ///< hundredths of a second after the frame
        Disposal disposal = Unspecified;
        int transparentIndex = -1; ///< palette index that is transparent, -1 for none
        /// A palette of the frame alone: 0 yellow, 1 cyan, 2 magenta, 3 black.
        bool hasOwnPalette = false;
        /// The palette index of each pixel, counted row by row; colorIndex for all when empty.
        std::function<int(int pixel)> colorAt = nullptr;
    };

    /// A palette of four colours: 0 red, 1 green, 2 blue, 3 white.
    GifBuilder(int screenWidth, int screenHeight);

    /// Adds a loop extension: 0 is endless. Without it the file has none.
    GifBuilder &loop(int count);
    GifBuilder &add(const Frame &frame);
    /// A frame that fills the screen.
    GifBuilder &add(int colorIndex, int delayCs);

    QByteArray data() const;
    /// Writes the file; fails the running test when it cannot.
    void write(const QString &path) const;

private:
    int m_width;
    int m_height;
    int m_loop = -1;
    QVector<Frame> m_frames;
};
