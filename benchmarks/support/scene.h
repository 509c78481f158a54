#pragma once

#include "animatedimage/object/animatedimage.h"
#include "framework/document.h"
#include "framework/page.h"

#include <memory>

/// An animated image on its own page, as a host has it.
class Scene
{
public:
    explicit Scene(const QString &film);
    Scene();
    Q_DISABLE_COPY(Scene)

    /// One tick of the frame timer, without waiting for it.
    void tick() const;

    Document document;
    Page *page;
    CAnimatedImage *image; ///< owned by the page
};

/// A picture to paint on, in the format that widgets are painted on.
QImage canvas(const QSize &size);
