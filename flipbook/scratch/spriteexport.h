#pragma once

#include "flipbook/scratch/sprite.h"
#include "flipbook/scratch/stageplacement.h"

#include <QtCore/QSet>
#include <QtCore/QStringList>

#include <functional>

class AnimatedObject;
class CBaseObject;
class MemoryAccount;
class Plugin;
class QImage;
class QJsonObject;

namespace Scratch
{

/// The longest side of a picture that Scratch's renderer is sure to draw, in pixels.
constexpr int MaxPictureSide = 8192;

/// Of pictures or packages: with more, Scratch is slow to load a sprite, and may fail to. It
/// refuses single pictures of more than 10 MB.
constexpr qint64 ManyBytes = qint64(10) * 1024 * 1024;

/// Makes sprites of the objects of one page.
class SpriteExporter
{
public:
    /// @p placement says where the page is on the stage. @p withScripts: the sprites play. What
    /// the sprites take is counted in @p memory; both references must outlive the exporter.
    SpriteExporter(const Plugin &plugin, const StagePlacement &placement, bool withScripts,
                   MemoryAccount &memory);

    /// Costumes get @p scale times as many pixels on each side; the sprites look as large as they
    /// would without.
    void setPictureScale(double scale) { m_pictureScale = scale; }

    /// Called after each costume with how many of its sprite's costumes are done. What it throws
    /// ends exported(), which leaves the object as it was.
    using CostumeProgress = std::function<void(int done, int all)>;
    void setProgress(const CostumeProgress &progress) { m_progress = progress; }

    /// The sprite of @p object, named @p name as far as Scratch and the other sprites allow. Its
    /// costumes are shown for @p delaysMs milliseconds, one time for each frame; any other number
    /// of times, such as none, means that the object's interval holds for all. Steps through frames
    /// of the object, so that all have the sizes of playback; it is stopped afterwards and shows
    /// the frame that it showed. Throws Failure when the object has no frames, when its costumes
    /// cannot be written to the temporary folder, or when they would need more memory than there
    /// is.
    Sprite exported(AnimatedObject &object, const QString &name, const QVector<int> &delaysMs = {});

    /// Messages for the user about the sprites made so far, one sentence each.
    const QStringList &remarks() const { return m_remarks; }

private:
    void requireMemory(AnimatedObject &object, const QString &name) const;
    QVector<Costume> costumesOf(AnimatedObject &object, const QString &name);
    QVector<Costume> framesOf(AnimatedObject &object, const QString &name);
    void count(const Costume &costume, const QString &objectName);
    QByteArray readPicture(const QJsonObject &json, const QString &folder,
                           const QString &objectName) const;
    Costume costumeAs(const QJsonObject &json, const QByteArray &png, const CBaseObject &object,
                      const QString &objectName);
    double scalePictures(Sprite &sprite);
    double shrinkToTexture(Sprite &sprite);
    void remarkOnAmount(const Sprite &sprite);

    const Plugin &m_plugin;
    MemoryAccount &m_memory;
    StagePlacement m_placement;
    bool m_withScripts;
    double m_pictureScale = 1.0;
    CostumeProgress m_progress = [](int, int) {};
    QSet<QString> m_takenNames;
    QStringList m_remarks;
};

} // namespace Scratch
