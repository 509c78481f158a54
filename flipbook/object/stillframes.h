#pragma once

#include "host/baseobject.h"

#include <QtCore/QPointer>
#include <QtCore/QVector>

class Document;

/// The frames that the objects of a document show which do not play. The host interface does not
/// restore them: without playing, an object returns to its first frame when it leaves the alternate
/// mode.
class StillFrames
{
public:
    /// Takes down what is shown now.
    explicit StillFrames(const Document &document);

    /// Shows it again. Objects that are gone by then are left out.
    void restore() const;

private:
    struct Still {
        QPointer<CBaseObject> object;
        int shown;
    };
    QVector<Still> m_stills;
};
