#pragma once

#include "tests/animatedimage/reentrancy/scene.h"

/// What a host does while it is told something. The object may be gone before.
struct Deed {
    const char *name;
    void (*act)(Scene &);
};

const QList<Deed> &deeds();
