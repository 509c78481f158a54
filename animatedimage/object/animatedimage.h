#pragma once

#include "animatedimage/animatedimageglobal.h"
#include "animatedimage/core/animatedportrait.h"
#include "animatedimage/core/frameregions.h"
#include "animatedimage/core/framescale.h"
#include "animatedimage/core/paintedcopy.h"
#include "animatedimage/core/playbacksteps.h"
#include "animatedimage/core/thumbnailcache.h"
#include "host/baseobject.h"

#include <QtCore/QJsonArray>
#include <QtCore/QList>
#include <QtCore/QPair>
#include <QtCore/QPointer>

class IGdDocument;
class QTimer;

/// Frame names with their pictures, in frame order.
using ThumbnailList = QList<QPair<QString, QImage>>;

/// A canvas object that shows an ordered list of frames one after another on a timer.
///
/// Owned by the host, which creates it through createObject_animatedImage() and frees it with
/// Release(). Owns its frames by value and its timer as a child. Everything runs on the GUI thread.
/// Bad input (an index outside the list, an unreadable file, a damaged stream) is ignored or gives
/// empty frames; no operation reports an error or lets an exception out. An operation that runs out
/// of memory stops where it is, and returns false, null or what is empty; the object can be used
/// and released as before. Any notification may lead the host to release the object; the operations
/// below stop there.
class ANIMATEDIMAGE_EXPORT CAnimatedImage : public CBaseObject
{
    Q_OBJECT

public:
    /// Returned by type(): by this number a host distinguishes animated images from other objects.
    static constexpr int TypeNumber = UserType + 11300;
    /// The presentation type of a tiled background that is clipped to the page. Every other
    /// number is the normal type.
    static constexpr int BackgroundType = 1;
    /// A loop count that never ends.
    static constexpr int LoopForever = PlaybackSteps::LoopForever;

    /// A stopped object without frames. @p objectId, @p editable and @p parent as CBaseObject
    /// takes them; the object begins on no page.
    CAnimatedImage(int objectId, bool editable, QGraphicsItem *parent);
    /// Sends no notification, also when the object plays.
    ~CAnimatedImage() override;

    // What the host calls.

    /// Item coordinates: the visible part while presented as a background, else the base's bounds.
    QRectF boundingRect() const override;
    /// Item coordinates. While the document is presented: the opaque pixels of the frame shown.
    /// While it is edited: these and the handles around the object.
    QPainterPath shape() const override;
    int type() const override;
    QString getObjName() override;

    /// Paints the frame shown into the object's rectangle, or the visible part of the background
    /// tile as it is. Draws nothing when @p painter is null or there is no frame to show.
    void OnQPainterDraw(QPainter *painter) override;

    /// The stream form. Both always return true. load() appends to the list of frames, so it is
    /// meant for an object just made, and leaves the object stopped. What a damaged stream does
    /// not give reads as 0, false or no frames, and nothing is allocated that the bytes present
    /// cannot justify.
    bool save(QDataStream &stream) override;
    bool load(QDataStream &stream) override;
    /// The JSON form, with the same promises. loadJson() adds the members that it looked for and
    /// did not find to @p json, as null.
    bool saveJson(QJsonObject &json) override;
    bool loadJson(QJsonObject &json) override;

    /// Also rescales the hit shapes.
    void setSize(QSizeF size, bool keepCenter, bool notify) override;
    /// Moves the background pattern instead of the object while it is presented as a background.
    void setPos(QPointF pos, bool notify) override;
    void setCenterPos(const QPointF &center, const QSizeF &size, double angle,
                      bool update) override;

    /// See AttributeId. True when handled here or by the base.
    bool SetAttribute(int id, QDataStream &stream, bool flag) override;

    /// Makes a copy of @p image the only frame. Null is ignored. Always true.
    bool loadFromImage(const QImage *image) override;
    /// Replaces the frames by those of a GIF (any path with ".gif" in it, in any case) or of a
    /// folder with a "config.json". What cannot be read gives no frames. Always true.
    bool loadFromFile(const QString &path) override;
    /// As above for a GIF whose timing is read from @p device (not owned, may be null) while its
    /// frames come from the file at @p path. False, with no frames, for any other path.
    bool loadFromFile(const QString &path, QIODevice *device) override;

    void Release() override;

    /// The settings: play, interval, and whether it loops forever. Always true.
    bool GetSettingJson(QString &json) override;
    /// Applies the panel's answer; returns false, and changes nothing, if it cannot be parsed.
    bool SetSettingJson(const QString &json, bool undoable, bool notify) override;

    /// Pixel size of the frame shown; (0, 0) when there is none.
    QSize getImageSize() override;

    /// See SpecialPropertyId. Returns true if handled here, otherwise the base's result. For
    /// SpecialPropertyId::CopyFromObject the stream holds the address of the CGDRootObject part of
    /// another animated image as a qint64; an address that is not one of a live animated image is
    /// never dereferenced.
    bool GetSpecialProperty(int id, QDataStream &stream) override;
    bool SetSpecialProperty(int id, QDataStream &stream, bool flag) override;
    /// Accepts everything and does nothing: animated images have no default properties.
    static bool SetDefaultSpecialProperty(int id, QDataStream &stream);

    /// The position on the page; the position of the pattern while presented as a background.
    QPointF getPos() override;
    /// Also renames every frame after the object when @p key is "object_name".
    bool setOtherParams(const QString &key, const QVariant &value) override;
    void setMirror(bool mirror, bool notify) override;
    void setFlip(bool flip, bool notify) override;
    /// One costume for each frame, all on a canvas of twice the largest frame. @p prefix is put
    /// before each file name as it is, so a folder must end with its separator. A frame that
    /// cannot be written still has its description.
    QJsonArray generateCostumesCode(const QString &prefix) override;

    // Playback.

    /// Starts or stops. Starting resets the loop counter; both show the first frame. The play
    /// state is sent to the settings panel on every call, so that a redundant one synchronises it.
    void playImage(bool run);
    /// Shows a frame. The normal type clamps the index, scales every frame like the one shown and
    /// resizes the object around its centre; the background type stores the index as it is.
    void setCurrentIndex(int index);
    /// Milliseconds between frames. A positive interval starts the timer, also while stopped (the
    /// ticks then do nothing); any other stops it.
    void setShiftInterval(int ms);
    void setKeepRatio(bool keepRatio);
    /// Repetitions after the first pass; LoopForever never ends.
    void setLoopCount(int count);
    /// Send the play state, or the presentation type, to the settings panel.
    void notifyPlayStatus();
    void notifyAnimatedType();

    // Background tile.

    /// Rebuilds the tile (twice across, twice down) from a frame, at the object's size rounded to
    /// pixels. An index outside the list, or a size that memory cannot hold, gives an empty tile.
    /// A frame that was never measured is measured.
    void generateBGImage(int index);
    /// Computes the part of the object that is on the page, then rebuilds the tile.
    void regenBGImage();

    // Opaque regions.

    /// Rebuilds the hit shape of a frame at the object's present size; @p recompute measures the
    /// pixels again first. A frame that was never measured is measured in any case. An index
    /// outside the list is ignored. The work itself is done when shape() asks for it.
    void updateRegion(int index, bool recompute);
    /// The same for every frame.
    void updateRegion(bool recompute);
    /// See region.h for these three.
    static QList<QRect> rectsFromImage(const QImage &image, int threshold);
    static void mergeRects(QList<QRect> &done, QList<QRect> &open, QList<QRect> &row);
    static bool getImageForPath(QImage &source, QImage &out, int maxSide);

    // Names and thumbnails.

    /// A name that no frame has, made from the stem of @p baseText (what is before its last
    /// underscore). @p stemAllowed admits the bare stem; the other candidates are numbered from 1.
    QString generatePortraitName(const QString &baseText, bool stemAllowed) const;
    /// Appends each frame's name and picture to @p out: the full picture, or one fitted into
    /// 150 x 150 pixels.
    void GetAllThumbnail(bool fullSize, ThumbnailList &out) const;

    // Import.

    /// Appends the frames of a GIF and takes its timing over; the object's geometry, index and
    /// play state stay as they are. A file that cannot be read appends nothing.
    void loadFromGifFile(const QString &fileName);
    /// The same with the timing read from @p device (not owned). An empty name or a null device
    /// changes nothing.
    void loadFromGifFile(const QString &fileName, QIODevice *device);

    // Belonging.

    /// Refreshes the document that the object remembers: that of its page; on no page the one
    /// known last, or else the framework's default document.
    void getBelongDoc();

private Q_SLOTS:
    /// One step of playback, at each tick of the timer.
    void onShiftTimeout();

private:
    friend class AnimatedImageProbe;

    // The helpers of one subject each, defined beside its sources. Nothing of them is exported.
    struct Q_DECL_HIDDEN Playback;      // object/playback.h
    struct Q_DECL_HIDDEN Import;        // object/import.h
    struct Q_DECL_HIDDEN SavedForm;     // object/savedform.h
    struct Q_DECL_HIDDEN Requests;      // protocol/requests.h
    struct Q_DECL_HIDDEN UndoableEdits; // protocol/undoableedits.cpp
    struct Q_DECL_HIDDEN Attributes;    // protocol/attributes.cpp

    Q_DECL_HIDDEN bool isFrame(int index) const;
    Q_DECL_HIDDEN bool isBackgroundType() const;
    /// Judged by the document as cached.
    Q_DECL_HIDDEN bool isAlternateMode() const;
    /// The user's name for the object.
    Q_DECL_HIDDEN QString nameOnPage() const;

    /// Appends frames that are not measured yet.
    Q_DECL_HIDDEN void addFrames(const QList<CAnimatedPortrait> &frames);
    /// The frames, with the sizes that the last step gave them. To be used to read or write sizes,
    /// to add frames, and to replace pictures.
    Q_DECL_HIDDEN QList<CAnimatedPortrait> &framesWithSizes();

    /// Takes a step in which the host may release the object. False when it has done so: nothing
    /// of the object may be touched then.
    template<typename Step>
    [[nodiscard]] bool outlives(const Step &step)
    {
        const QPointer<CAnimatedImage> self(this);
        step();
        return !self.isNull();
    }
    /// Tells the host that the object shows something else. False when that was its end.
    [[nodiscard]] Q_DECL_HIDDEN bool notifyShownContent();

    /// The part of the object that is on its page, in item coordinates; all of it without a page.
    Q_DECL_HIDDEN QRectF visibleRect();
    Q_DECL_HIDDEN void followMirrorOrFlip();

    // shape.cpp
    Q_DECL_HIDDEN FrameRegions::View view() const;
    Q_DECL_HIDDEN void measureOnce(int index);

    // The fields, in the order in which hosts know them. "Settings" are the user's, saved with the
    // object; "edits" are special properties.
    IGdDocument *m_belongDoc; ///< as found last, not owned; written by getBelongDoc() alone
    QTimer *m_shiftTimer;     ///< the frame timer, a child; its interval is that of the last start
    QList<CAnimatedPortrait> m_portraits; ///< in play order; written by imports, loading, edits
    bool m_isRunning;                     ///< playback is on; playImage() and the host's steps
    int m_runningIndex;  ///< the frame shown, from 0; may be outside the list after loading
    int m_loopsDone;     ///< passes completed since play started; the ticks count
    int m_shiftInterval; ///< ms for each frame, a setting; 0 or less does not tick
    bool m_keepRatio;    ///< whether the host's resizing keeps proportions, a setting
    bool m_mirror;       ///< a saved value alone: what is painted is the base's m_mirrored
    bool m_flip;         ///< a saved value alone: what is painted is the base's m_flipped
    int m_loopCount;     ///< passes after the first, a setting; LoopForever never ends
    bool m_playEnabled;  ///< ticks advance frames; off while the host plays (attribute 2704)
    bool m_wasRunning;   ///< m_isRunning when m_playEnabled was last turned off
    int m_elapsedMs;     ///< ms counted by the host's ticks since the pass began (attribute 2705)
    int m_animatedType;  ///< BackgroundType, or any other number for the normal type
    QRectF m_bgRect;     ///< the part on the page, item coordinates; regenBGImage(), attribute 2804
    QImage m_bgImage;    ///< the frame at the object's size, 2 x 2 times; generateBGImage()
    QPointF m_bgPos;     ///< where the pattern was moved to, in units; setPos() while presented
    bool m_savedRunning; ///< m_isRunning at the last attribute 2804
    int m_savedIndex;    ///< m_runningIndex at the last attribute 2804
    double m_handleSize; ///< side of the host's handles in units, at construction and at 2805
    QList<QSizeF> m_savedFrameSizes; ///< display sizes of all frames at the last attribute 2804
    mutable FrameRegions m_regions;  ///< of all frames; shape() computes what it is asked for
    FrameScale m_scale;              ///< of the last step; see framesWithSizes()
    PaintedCopy m_paintedCopy;       ///< of the frame shown
    ThumbnailCache m_thumbnails;     ///< of the frames that a host has listed
};
