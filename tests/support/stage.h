#pragma once

#include "animatedimage/object/animatedimage.h"
#include "framework/document.h"
#include "framework/page.h"
#include "tests/support/notificationlog.h"
#include "tests/support/probe.h"

#include <QtCore/QPointer>

/// A document whose mode is a plain switch, so that a test can present its pages without the
/// attributes that a real host sends along.
class StageDocument : public Document
{
public:
    int alternateMode() const override { return m_mode; }
    void setAlternateMode(int mode) { m_mode = mode; }

private:
    int m_mode = 0;
};

/// A document with one page of 800 x 600, an animated image on it, and a log of what the host
/// hears from then on. The page owns the object; release() ends it early.
class Stage
{
public:
    /// An object without frames, at (0, 0), of the base's initial size.
    Stage();
    /// An object with these frames, named f_1, f_2, ..., of the pixel size of the first.
    explicit Stage(const QList<QImage> &frames);

    CAnimatedImage *operator->() const { return image; }

    /// Appends a measured frame, displayed at its pixel size.
    void addFrame(const QString &name, const QImage &picture);
    /// The names of all frames, in order.
    QStringList frameNames();
    void release();
    bool isReleased() const { return m_alive.isNull(); }

    StageDocument document;
    Page *page;
    CAnimatedImage *image;
    AnimatedImageProbe probe;
    NotificationLog log;

private:
    QPointer<CAnimatedImage> m_alive;
};

/// Frames of one colour each, with these pixel sizes.
QList<QImage> solidFrames(const QList<QSize> &sizes);
