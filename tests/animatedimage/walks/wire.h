#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QDataStream>
#include <QtCore/QString>
#include <QtCore/QVector>

/// A value as requests and their answers carry it.
struct WireItem {
    enum Kind {
        Number,  ///< 32 bits
        Flag,    ///< one byte
        Text,    ///< a length and UTF-16
        Picture, ///< a marker and a PNG file; the number is that of the pool
        Handle,  ///< 64 bits; the number says whose address, see HandleOf
    };

    Kind kind = Number;
    int number = 0;
    QString text;
};

/// Whose address a handle holds.
enum class HandleOf { Nobody, Self, Other, PlainObject, NoObject };
constexpr int handleKinds = 5;

namespace Wire
{

WireItem number(int value);
WireItem flag(bool value);
WireItem text(const QString &value);
WireItem picture(int number);
WireItem handle(HandleOf whose);

/// How many bytes the items take.
int size(const QVector<WireItem> &items);

/// The bytes of the items. @p handles holds the address for each kind of handle.
QByteArray bytes(const QVector<WireItem> &items, QDataStream::ByteOrder order,
                 const QVector<qint64> &handles = {});

/// Whether @p bytes begins with these items; @p length is how many bytes they take there. An empty
/// text may be written as a null one.
bool matches(const QByteArray &bytes, const QVector<WireItem> &items, QDataStream::ByteOrder order,
             int &length);

QString words(const QVector<WireItem> &items);

} // namespace Wire
