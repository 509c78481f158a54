#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QSize>
#include <QtCore/QVector>

/// Small files that would need much memory, and what they are made of.
namespace Bombs
{

/// A chunk of a PNG file.
QByteArray pngChunk(const char *type, const QByteArray &data);
/// A PNG file of transparent pixels, with @p chunks before them.
QByteArray png(const QSize &size, const QVector<QByteArray> &chunks = {});
/// A small PNG file that claims to have so many pixels of eight-bit RGBA, and has none of them.
QByteArray claimingPng(int width, int height);
/// A PNG file of which every second pixel is transparent, like a checkerboard; the pixel at the
/// top left is when @p odd is 0.
QByteArray checkerboard(int side, int odd);
/// A compressed text chunk, with a text of @p length bytes.
QByteArray compressedText(int length);
/// A colour profile chunk of @p length bytes when it is inflated.
QByteArray colourProfile(int length);
/// A text chunk with @p length bytes.
QByteArray text(int length, char letter);

/// The digest by which a document knows the PNG file @p png.
QString digest(const QByteArray &png);

/// The saved state of an object that shows these PNG files of the document, in this order.
QJsonObject stateWith(const QVector<QByteArray> &frames);

/// Writes a document of one page, with objects of these states, that holds @p pictures.
void writeDocument(const QString &path, const QVector<QJsonObject> &states,
                   const QVector<QByteArray> &pictures = {});
/// Writes a document whose document.json is @p text.
void writeDocument(const QString &path, const QByteArray &text);

/// Makes a folder at @p path with @p picture as "a.png" and a config.json that lists it @p count
/// times.
void writeFolder(const QString &path, const QByteArray &picture, int count);

/// A GIF of @p frames dots on a screen of one pixel.
QByteArray manyDots(int frames);

/// A GIF whose frames are checkerboards of @p side pixels, each other than the one before.
QByteArray checkerboardFilm(int side, int frames);

/// A zip archive with @p entries empty files.
QByteArray manyEntries(int entries);

} // namespace Bombs
