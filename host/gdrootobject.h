#pragma once

#include "host/hostglobal.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QMap>
#include <QtCore/QPointF>
#include <QtCore/QRectF>
#include <QtCore/QSizeF>
#include <QtCore/QString>
#include <QtCore/QVariant>

class IGdPage;
class QDataStream;
class QGraphicsItem;
class QImage;
class QIODevice;
class QPainter;

/// The root of every canvas object: what a host can ask of an object without knowing its class.
///
/// Coordinates: an object's own (item) coordinates begin at its top left corner, so its rectangle
/// is (0, 0, width, height); its position is that corner, unrotated, in page coordinates. One unit
/// is one pixel of an unscaled page. Angles are degrees, clockwise. Everything runs on the GUI
/// thread. The virtual operations are in the order of the host's virtual table; do not reorder
/// them.
class HOST_API CGDRootObject
{
public:
    virtual ~CGDRootObject();

    /// The name of the kind of object, such as "animated image"; not the user's name for it,
    /// which is the other-param "object_name".
    virtual QString getObjName();

    /// Paints the object's content in item coordinates. The base class calls it with mirror, flip
    /// and rotation already applied; @p painter may be null, which paints nothing.
    virtual void OnQPainterDraw(QPainter *painter);

    /// Write and read the whole object; true when handled. Streams may be damaged or hostile:
    /// an override reads what it can and never throws. Reading is done once, on a new object.
    virtual bool save(QDataStream &stream) = 0;
    virtual bool load(QDataStream &stream) = 0;
    virtual bool saveJson(QJsonObject &json) = 0;
    virtual bool loadJson(QJsonObject &json) = 0;

    /// Gives the object the size @p size in item units. @p keepCenter keeps its centre where it is
    /// on the page rather than its top left corner; @p notify sends PropertyChange::Geometry.
    virtual void setSize(QSizeF size, bool keepCenter, bool notify) = 0;
    /// Moves the top left corner to @p pos in page coordinates.
    virtual void setPos(QPointF pos, bool notify);
    /// Gives centre (page coordinates), size (item units) and rotation (degrees) in one step.
    /// @p update asks an override to bring what it derives from them up to date; the base itself
    /// does not notify the host, updateAfterObjRectChanged() does. An object that does not turn
    /// freely keeps its direction. What is not finite, or negative as a size, is ignored as a
    /// whole, here as in every other change of geometry.
    virtual void setCenterPos(const QPointF &center, const QSizeF &size, double angle, bool update);

    /// Handles the attribute @p id (see AttributeId), whose input is in @p stream. The base returns
    /// true for its own attributes (entering and leaving the alternate mode) and false for all
    /// others, which leaves them to the override. Only the base uses @p flag.
    virtual bool SetAttribute(int id, QDataStream &stream, bool flag);

    /// Replace the object's content; true when the source is of a kind that the object takes.
    /// Neither @p image nor @p device changes owner. The base takes nothing: false.
    virtual bool loadFromImage(const QImage *image);
    virtual bool loadFromFile(const QString &path);
    virtual bool loadFromFile(const QString &path, QIODevice *device);

    /// Ends the object's life. The host calls this and nothing of the object afterwards.
    virtual void Release();

    /// The settings panel: a JSON text that lists the object's settings, and the JSON text with
    /// which the panel answers. The base has no settings and returns false.
    virtual bool GetSettingJson(QString &json);
    virtual bool SetSettingJson(const QString &json, bool undoable, bool notify);

    /// The pixel size of what the object shows; (0, 0) for nothing, and for the base.
    virtual QSize getImageSize();

    /// Operations by identifier (see SpecialPropertyId). Request and answer share the stream's
    /// device, which must be seekable and readable (and writable if there is an answer).
    /// The base knows no identifier: false. Setting repaints the object nevertheless, since an
    /// override may have changed what it shows.
    virtual bool GetSpecialProperty(int id, QDataStream &stream);
    virtual bool SetSpecialProperty(int id, QDataStream &stream, bool flag);

    /// The position of the top left corner in page coordinates.
    virtual QPointF getPos();

    /// Stores a named parameter that travels with the object in both saved forms, if it is a
    /// bool, int, uint, qlonglong, double, QString, QStringList, QPointF, QSizeF, QRectF or
    /// QByteArray; values of other types are not saved. An invalid value removes the parameter.
    /// True when the stored value changed.
    virtual bool setOtherParams(const QString &key, const QVariant &value);

    /// Mirror left to right, or flip top to bottom. @p notify sends PropertyChange::Geometry.
    virtual void setMirror(bool mirror, bool notify);
    virtual void setFlip(bool flip, bool notify);

    /// Writes the object's pictures as Scratch 3 costumes, into files whose paths begin with
    /// @p prefix, and describes them. The base has none: an empty array.
    virtual QJsonArray generateCostumesCode(const QString &prefix);

    /// The named parameter @p key, or an invalid QVariant.
    QVariant getOtherParams(const QString &key) const;

    QSizeF getSize() const;       ///< item units
    QRectF getClientRect() const; ///< the object's rectangle in item coordinates
    bool isMirrored() const;      ///< the live left to right state, as painted
    bool isFlipped() const;       ///< the live top to bottom state, as painted

    /// The angle that the object is painted at.
    double getRotate() const;
    /// How the object takes rotation: 0 stays upright, 1 only looks left or right, 2 turns freely.
    int getKTRotateType() const;
    /// The direction that the object was given, also when its type does not paint it.
    double getKTRotateDegree() const;
    /// Gives a direction; only an object that turns freely is painted at it.
    void setRotate(double degrees, bool notify);
    /// An unknown type counts as 2.
    void setKTRotateType(int type);

    /// The page that holds the object, or null.
    IGdPage *GetPage() const;
    /// Called by the page when it takes the object up (or gives it away: null).
    void SetPage(IGdPage *page);

    /// The side of the editor's handles in item units; one setting for the whole editor.
    double getHandleSize() const;
    static void SetHandleSize(double size);

    /// What the host is doing with the object: 0 nothing, 2 moving it by hand.
    int getStatus() const;
    void setStatus(int status);

    /// Called after the object's geometry or shape has changed: works the placing of @p item out
    /// again where it is stale, updates the scene, and, when @p notify is true, sends
    /// PropertyChange::Geometry. @p item is the object's own graphics item.
    void updateAfterObjRectChanged(QGraphicsItem *item, bool notify);

    /// Describe one setting for the settings panel (docs/settings-json.md). @p id identifies it,
    /// @p nameId is the string id of its label, @p type the type of its value ("int"), and
    /// @p minimum, @p maximum and @p unit bound and label it; an empty text leaves that out.
    QJsonObject GetSettingJsonSwitch(QString &id, QString &nameId, bool value);
    QJsonObject GetSettingJsonInput(QString &id, QString &nameId, QString &value, QString &type,
                                    QString &minimum, QString &maximum, QString &unit);
    /// Reads the panel's answer into a map from setting id to value text. False, with the map
    /// untouched, when @p json is not such an answer.
    bool ParseSettingJson(const QString &json, QMap<QString, QString> &values);

protected:
    CGDRootObject();

    /// Called around every change of geometry by the base class, which owns the graphics item.
    virtual void geometryAboutToChange();
    virtual void geometryChanged(bool notify);

    QString m_objName;                     ///< returned by getObjName()
    QRectF m_rect;                         ///< the object's rectangle in item coordinates
    bool m_rectStale = false;              ///< the placement must be recomputed
    bool m_hasShape = false;               ///< the object can be hit; without it shape() is empty
    bool m_mirrored = false;               ///< live mirror state
    bool m_flipped = false;                ///< live flip state
    bool m_hasLayerEffects = false;        ///< the painted picture is kept in a cache
    int m_status = 0;                      ///< see getStatus()
    QMap<QString, QVariant> m_otherParams; ///< named parameters, saved with the base

private:
    friend class CBaseObject;

    Q_DISABLE_COPY(CGDRootObject)

    QPointF m_pos;
    double m_rotateDegree = 0.0;
    int m_rotateType = 2;
    IGdPage *m_page = nullptr;
};
