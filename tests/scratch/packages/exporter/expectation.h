#pragma once

#include "flipbook/object/animatedobject.h"
#include "tests/scratch/packages/exporter/packagefile.h"

#include <QtCore/QJsonObject>
#include <QtCore/QRectF>
#include <QtCore/QStringList>

/// What should arrive in Scratch of one object.
struct ExpectedSprite {
    CBaseObject *object = nullptr;
    QString name;             ///< of the sprite
    QStringList costumeNames; ///< empty: the frames have names that Scratch keeps
    bool plays = true;
    QVector<int> delaysMs; ///< of the frames; empty: the object's interval for each
};

/// The part of a page that fills the stage: a page itself, or around a lone film the stage.
QRectF stageAround(const QRectF &page, bool isDocument);

/// Compares @p package with what the objects show, and gives the expectation with which the client
/// is asked. From the package it takes nothing that was not compared: digests of pictures that
/// show what the frames do, and rotation centres that put them where the objects are.
/// @throw Failure that says what differs.
QJsonObject expectationOf(const PackageFile &package, const QVector<ExpectedSprite> &sprites,
                          const QRectF &stage);
