#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QPair>
#include <QtGui/QImage>

/// Walks through an answer byte by byte, without its own stream: numbers and texts are
/// compared literally, and a picture is a marker followed by a PNG file.
class AnswerBytes
{
public:
    explicit AnswerBytes(const QByteArray &bytes)
        : m_bytes(bytes)
    {
    }

    /// The next @p count bytes in hexadecimal digits; fewer at the end.
    QByteArray hex(int count);
    /// The next picture. A marker of 0 is a null picture. isSound() is false after any other.
    QImage picture();
    /// A count, then a text and a picture for each.
    QList<QPair<QString, QImage>> thumbnails();

    bool atEnd() const { return m_place == m_bytes.size(); }
    int place() const { return m_place; }
    bool isSound() const { return m_sound; }

private:
    QByteArray take(int count);
    quint32 number();

    QByteArray m_bytes;
    int m_place = 0;
    bool m_sound = true;
};
