#pragma once

#include "flipbook/object/plugin.h"

#include <QtCore/QJsonObject>

/// All that an animated image holds beside its pictures: settings, geometry, names. It is read from
/// the object's saved form, so it also tells what no identifier asks for, and takes no longer for
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

    /// Gives @p object this state, and its frames their names where there are as many. It is
    /// stopped then. Its frames keep their pictures.
    void giveTo(const Plugin &plugin, CBaseObject &object) const;

    bool operator==(const FilmState &other) const { return m_json == other.m_json; }
    bool operator!=(const FilmState &other) const { return !(*this == other); }

private:
    QJsonObject m_json;
};
