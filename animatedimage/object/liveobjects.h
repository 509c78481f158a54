#pragma once

#include <QtCore/qglobal.h>

class CAnimatedImage;

/// The animated images that exist at present, by the address a host knows them by. A request may
/// carry any number as an address: only one that is found here may be used.
namespace LiveObjects
{

void add(CAnimatedImage *object);
void remove(CAnimatedImage *object);

/// Whether @p object, which may be any pointer, is one of them.
bool holds(const CAnimatedImage *object);

/// The animated image whose CGDRootObject part is at @p address, or null.
CAnimatedImage *at(qint64 address);

} // namespace LiveObjects
