#pragma once

#include "tests/animatedimage/walks/wire.h"

#include <QtCore/QPointF>
#include <QtCore/QSizeF>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

/// One thing that a host or its user does to one of the two objects of a walk: a plain value, so
/// that a walk is a list that can be printed, repeated and shortened.
struct Step {
    enum Op {
        AddFrame,
        Tick,
        Play,
        SetIndex,
        SetInterval,
        SetLoopCount,
        SetKeepRatio,
        SetSize,
        SetCenterPos,
        SetPos,
        SetMirror,
        SetFlip,
        SetParam,
        SendAttribute,
        GetProperty,
        SetProperty,
        SetSettings,
        GetSettings,
        GenerateTile,
        RegenerateTile,
        UpdateRegion,
        UpdateRegions,
        NotifyType,
        LoadImage,
        LoadFile,
        LoadFileWithDevice,
        Undo,
        Redo,
        OpenMacro,
        CloseMacro,
        PushChange,
        Present,
        Edit,
        SetMode,
        PutOnPage,
        TakeOffPage,
        CopyByStream,
        CopyByJson,
        Replace,
        SetStatus,
        SetRotation,
        SetRotateType,
        SetShadow,
        SetHandleSize,
        SetHasShape,
        CompareThumbnails,
        ComparePainting,
    };

    /// What a request comes on.
    enum Device { Buffer, ReadOnlyBuffer, Sequential };

    Op op = Tick;
    int object = 0; ///< 0 or 1

    // What these mean depends on the operation; words() tells.
    int number = 0;
    int second = 0;
    bool flag = false;
    bool other = false;
    QPointF point;
    QSizeF size;
    double angle = 0.0;
    QString text;
    QVariant value;
    QStringList texts;

    // A request or an attribute.
    int id = 0;
    QVector<WireItem> input;
    int missing = 0; ///< bytes cut off the end of the input
    Device device = Buffer;
    bool hasBadStatus = false;
    bool isLittleEndian = false;
    int before =
        0; ///< other bytes before the input; for what goes to the start: where the stream is
    int bytesAfter = 0; ///< other bytes after the input

    QDataStream::ByteOrder order() const
    {
        return isLittleEndian ? QDataStream::LittleEndian : QDataStream::BigEndian;
    }
    int bytesThere() const { return Wire::size(input) - missing; }
    /// Whether the request goes back to the start of its device before it reads or writes.
    bool goesToStart() const;

    QString words() const;
};
