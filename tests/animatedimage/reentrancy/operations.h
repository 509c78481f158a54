#pragma once

#include "tests/animatedimage/reentrancy/scene.h"

/// Something that a host has an object do.
struct SceneOperation {
    QString name;
    std::function<void(Scene &)> prepare;
    std::function<void(Scene &)> act;
};

/// Special properties, attributes, both saved forms, imports, undo and redo, ticks, geometry,
/// settings and costumes.
QList<SceneOperation> sceneOperations();
