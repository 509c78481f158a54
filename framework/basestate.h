#pragma once

#include <QtCore/QMap>
#include <QtCore/QPointF>
#include <QtCore/QSizeF>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtGui/QColor>

class QDataStream;
class QJsonObject;

/// What both saved forms keep of a base object.
struct BaseState {
    int objectId = 0;
    bool editable = true;
    QPointF pos;
    QSizeF size;
    int rotateType = 2;
    double rotateDegree = 0.0;
    bool mirrored = false;
    bool flipped = false;
    QColor shadowColor; ///< invalid: no shadow
    QPointF shadowOffset;
    QMap<QString, QVariant> otherParams;
};

/// One block, so that what follows it in the stream is found even when its content is damaged.
/// Its byte order is fixed, independent of that of the stream.
void writeBaseState(QDataStream &stream, const BaseState &state);
/// Reads over @p state as far as the block goes: what is missing or no possible value stays as
/// it was; parameters are replaced as a whole. False when anything was missing.
bool readBaseState(QDataStream &stream, BaseState &state);

void writeBaseState(QJsonObject &json, const BaseState &state);
/// Missing and impossible members leave @p state as it was; parameters are replaced as a whole
/// where there are any. False when nothing of a base object is in @p json.
bool readBaseState(const QJsonObject &json, BaseState &state);
