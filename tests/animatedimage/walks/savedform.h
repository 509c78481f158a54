#pragma once

#include "tests/animatedimage/walks/modelobject.h"

/// What a saved form holds of an object, as it is read back.
struct SavedForm {
    ModelObject base; ///< of which the base's own part counts
    QList<int> pictures;
    int interval = 0;
    bool keepRatio = false;
    bool mirror = false;
    bool flip = false;
    int loopCount = 0;
    bool isRunning = false;
    const ImportSource *gif = nullptr; ///< where its frames come from instead, or null
};
