#pragma once

#include "framework/document.h"
#include "framework/page.h"
#include "tests/support/probe.h"

#include <QtCore/QObject>

/// The points of a hit shape, to be compared exactly: points and paths of Qt compare roughly.
using Points = QList<QPair<double, double>>;

/// An animated image of one plug-in on a page, with a second one to copy from, and what can be seen
/// of it.
class Subject : public QObject
{
    Q_OBJECT

public:
    using Create = CBaseObject *(*)(int, int, bool);

    /// @p listens: the shape is asked for at every notification.
    Subject(Create create, bool listens);

    CBaseObject *image() const { return m_image; }
    CBaseObject *other() const { return m_other; }
    Document &document() { return m_document; }
    /// Sends a request.
    void get(int id, const QByteArray &input);
    void set(int id, const QByteArray &input);
    void setAttribute(int id, const QByteArray &input);

    int frameCount() const;
    Points shape() const;
    QImage painted();
    QByteArray saved() const;
    QByteArray savedJson() const;
    /// The shapes that listeners saw since the last call.
    QList<Points> takeHeard();
    /// What the last request left in its buffer.
    const QByteArray &answer() const { return m_answer; }
    /// All frames, with their regions computed or as they are.
    QList<CAnimatedPortrait> frames(bool workedOut);

private:
    Document m_document;
    Page *m_page;
    CBaseObject *m_image;
    CBaseObject *m_other;
    QList<Points> m_heard;
    QByteArray m_answer;
};
