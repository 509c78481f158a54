#pragma once

#include "tests/support/stage.h"

#include <QtCore/QPointer>
#include <QtCore/QTemporaryDir>

#include <functional>

/// The files that operations read.
class SceneFiles
{
    QTemporaryDir m_place;

public:
    SceneFiles();

    QString gif;
    QString picture;
    QString folder;      ///< of frames
    QString costumes;    ///< what costume files begin with
    QByteArray state;    ///< the stream form of another object, which plays
    QJsonObject json;    ///< its JSON form
    QJsonObject gifJson; ///< the JSON form of an object that refers to the GIF
};

/// How an object is found by an operation.
struct Situation {
    bool isBackground;
    bool isPresented;
    bool isPlaying;
    bool hasOneFrame;

    QString name() const;
    static QList<Situation> all();
};

/// A page with the object that a test is about, which has a shadow, and another object. All that
/// the host is told is heard, also by the undo stack.
class Scene : public QObject
{
public:
    Scene(const Situation &situation, const SceneFiles &files);
    ~Scene() override;

    CAnimatedImage *object() { return m_object; }
    CAnimatedImage *other() { return m_other; }
    Page *page() { return m_page; }
    bool isAlive() const { return !m_object.isNull(); }

    /// Does @p deed when the host is told something for the nth time from now on, counted from 1.
    void interrupt(int nth, const std::function<void(Scene &)> &deed);
    bool isInterrupted() const { return m_left <= 0; }
    /// How often the host was told something since then, up to the deed.
    int heard() const { return m_heard; }
    /// How often the host was told something of the object, or for the settings panel, after the
    /// end of the object.
    int heardTooLate() const { return m_heardTooLate; }

    Stage stage;
    const SceneFiles &files;

private:
    void hear(bool isOfTheObject);

    QPointer<CAnimatedImage> m_object;
    QPointer<CAnimatedImage> m_other;
    QPointer<Page> m_page;
    std::function<void(Scene &)> m_deed;
    int m_left = 0;
    int m_heard = 0;
    int m_heardTooLate = 0;
};
