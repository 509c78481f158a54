#pragma once

#include "host/gddocument.h"
#include "host/gdpage.h"

class CBaseObject;
class QJsonObject;

/// A document that hands pictures which are in memory to an object that reads its saved form: the
/// object then shares their pixels, and nothing is encoded or decoded.
class FrameSupply final : public IGdDocument, public IGdPage
{
public:
    /// Lets @p object, a new one on no page, read @p state with these pictures.
    static void load(CBaseObject &object, QJsonObject &state, const QList<QImage> &pictures);
    /// The same from the stream form without its list of pictures. False when memory runs out.
    static bool load(CBaseObject &object, QDataStream &state, const QList<QImage> &pictures);

    QRectF pageRect() const override { return QRectF(); }
    IGdDocument *document() const override;
    qint64 queryObject(CGDRootObject *, int) override { return 0; }
    void applyObject(int, qint64, const QList<CGDRootObject *> &, bool, const QString &,
                     bool) override
    {
    }

    int alternateMode() const override { return 0; }
    bool keepsImagesInline() const override { return false; }
    void streamImageList(QDataStream &, QList<QImage> &images, QStringList &, QStringList &,
                         bool saving) override;
    void streamFileReference(QDataStream &, QString &path, QString &, bool saving) override;
    void jsonImageList(QJsonObject &, QList<QImage> &images, const QString &, bool saving) override;
    void jsonFileReference(QJsonObject &, QString &path, const QString &, bool saving) override;

private:
    FrameSupply() = default;
    static FrameSupply &instance();

    QList<QImage> m_pictures;
};
