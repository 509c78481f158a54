#pragma once

#include <QtCore/QStringList>

/// Files that are imported together: which of them belong into one film.
struct PictureGroup {
    QStringList pictures; ///< two or more still pictures of one size; empty when there are none
    QString name;         ///< what their names have in common
    QStringList others;
};

/// Looks at the sizes that picture files claim; decodes nothing. The order of @p paths is kept.
PictureGroup groupPictures(const QStringList &paths);
