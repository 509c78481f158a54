#pragma once

#include "flipbook/object/plugin.h"

#include <QtCore/QJsonObject>

/// Everything of an animated image except its pictures: settings, geometry, names. It is read from
/// the object's saved form, so it includes what has no identifier, and takes no longer for
/// large pictures.
class FilmState
{
public:
    FilmState() = default;
    /// The state of @p object. From then on the object belongs to the document of its page, if it
    /// remembered another one.
    explicit FilmState(CBaseObject &object);

    bool keepsRatio() const;
    void setKeepsRatio(bool keeps);
    void setLoopCount(int count);
    /// Milliseconds, at least 1.
    void setInterval(int ms);
    /// The user's name for the object.
    void setName(const QString &name);

    /// A new object of this state with @p frames in the place of its own, which share their pixels
    /// with it. It shows the frame @p shown, at the scale and around the centre of the one before.
    OwnedObject withFrames(const Plugin &plugin, const Plugin::Frames &frames, int shown) const;

    /// Gives @p object this state, and its frames their names where there are as many. It is
    /// stopped then. Its frames keep their pictures.
    void giveTo(const Plugin &plugin, CBaseObject &object) const;

    bool operator==(const FilmState &other) const { return m_json == other.m_json; }
    bool operator!=(const FilmState &other) const { return !(*this == other); }

private:
    QSizeF shownSize(const QImage &picture) const;

    QJsonObject m_json;
    QSizeF m_pixels; ///< of the frame that was shown
};
