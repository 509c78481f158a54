#pragma once

#include "host/hostglobal.h"

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtGui/QImage>

class QDataStream;
class QJsonObject;

/// A document: what pages belong to, and what carries their pictures in both saved forms.
/// Owned by the host. An object keeps a plain pointer to the document it last belonged to, so a
/// document must outlive the objects that were on its pages.
class HOST_API IGdDocument
{
public:
    virtual ~IGdDocument() = default;

    /// The mode of the document: 0 while its objects are edited, anything else (the alternate
    /// mode) while they are presented.
    virtual int alternateMode() const = 0;

    /// Whether pictures are written into the stream where they occur (true) or handed to the
    /// document's store through streamImageList() (false). Called for each saving and
    /// loading; both must get the same answer.
    virtual bool keepsImagesInline() const = 0;

    /// Writes @p images to @p stream (@p saving true) or fills the list from it (false).
    /// A damaged or hostile stream gives fewer images, or none; it never throws.
    /// The two string lists are scratch space of the call: empty on entry, ignored afterwards.
    virtual void streamImageList(QDataStream &stream, QList<QImage> &images, QStringList &names,
                                 QStringList &files, bool saving) = 0;

    /// Writes a reference to the file at @p path (@p saving true) or reads one and puts the path
    /// of a local file into @p path (false); an unreadable reference gives an empty path.
    /// @p scratch is space of the call: empty on entry, ignored afterwards.
    virtual void streamFileReference(QDataStream &stream, QString &path, QString &scratch,
                                     bool saving) = 0;

    /// The JSON counterpart of streamImageList(): the images are the member @p key of @p json.
    virtual void jsonImageList(QJsonObject &json, QList<QImage> &images, const QString &key,
                               bool saving) = 0;

    /// The JSON counterpart of streamFileReference(): the reference is the member @p key.
    virtual void jsonFileReference(QJsonObject &json, QString &path, const QString &key,
                                   bool saving) = 0;
};
