#pragma once

#include "tests/animatedimage/walks/modelhost.h"
#include "tests/animatedimage/walks/wire.h"

#include <QtCore/QMap>
#include <QtCore/QVariant>
#include <QtGui/QColor>
#include <QtGui/QPainterPath>

class ModelObject;
class WireReader;
struct ImportSource;
struct SavedForm;

/// A request with its input, of which the first bytes alone may have come.
struct ModelRequest {
    int id = 0;
    QVector<WireItem> input;
    int bytesThere = 0;
    bool canBeAnswered = true;      ///< whether its device can be written
    ModelObject *handled = nullptr; ///< the animated image whose handle the input holds
};

/// What comes of a request.
struct ModelAnswer {
    bool result = true;
    bool isWritten = false;
    bool fromStart = true; ///< at the start of the buffer, or where the stream was
    QVector<WireItem> items;
};

/// An animated image in plain values: what each operation makes of them and what the host hears,
/// step by step and without regard to speed. It shares no code with the plug-in.
class ModelObject
{
public:
    ModelObject() = default;
    ModelObject(ModelHost *host, int serial);

    void useHost(ModelHost *newHost) { host = newHost; }
    bool isFrame(qint64 i) const { return i >= 0 && i < frames.size(); }
    bool isBackground() const { return type == 1; }
    /// Whether it is presented as a background, as far as its cached document says.
    bool isPresentedBackground() const { return host->isAlternate(document) && isBackground(); }

    // The base, modelbase.cpp.
    void baseSetSize(const QSizeF &newSize, bool keepCenter, bool notify);
    void baseSetCenterPos(const QPointF &center, const QSizeF &newSize, double angle);
    void baseSetPos(const QPointF &newPos, bool notify);
    bool baseSetParam(const QString &key, const QVariant &value);
    void updateAfterRectChanged();
    void setShadow(const QColor &color);
    void takeOverBase(const ModelObject &other);
    double rotation() const { return rotateType == 2 ? degree : 0.0; }
    QPointF sceneCenter() const;
    void changed(int id);
    void clearCache();
    void refreshDocument();

    // Playback, modelplayback.cpp.
    void playImage(bool run);
    void tick();
    void setCurrentIndex(int newIndex);
    void setShiftInterval(int ms);
    void notifyPlayStatus();
    void notifyType();

    // Geometry, modelgeometry.cpp.
    void setSize(const QSizeF &newSize, bool keepCenter, bool notify);
    void setCenterPos(const QPointF &center, const QSizeF &newSize, double angle, bool update);
    void setPos(const QPointF &newPos, bool notify);
    QPointF getPos() const;
    void setMirror(bool on, bool notify);
    void setFlip(bool on, bool notify);
    QSize imageSize() const;

    // Attributes, modelattributes.cpp.
    bool setAttribute(int id, const QVector<WireItem> &input, int bytesThere);

    // Background and painting, modelpainting.cpp.
    void generateTile(int i);
    void regenerateTile();
    void cropToPage();
    QImage tilePixels() const;
    /// What painting draws on @p canvas, @p step units from its corner.
    void paint(QImage &canvas, const QPointF &step);

    // Regions, modelshape.cpp.
    void updateRegion(int i, bool recompute);
    void updateRegions(bool recompute);
    QPainterPath shape() const;

    // Names, modelnames.cpp.
    QString freeName(const QString &base, bool stemAllowed) const;
    QString objectName() const;
    bool setParam(const QString &key, const QVariant &value);

    // Settings, modelsettings.cpp.
    QString settings() const;
    /// @p values as the panel's answer has them: an id, and its value as text.
    void applySettings(const QMap<QString, QString> &values);

    // Import, modelimport.cpp.
    void addFrame(const QString &name, int picture);
    void loadFromImage(int picture);
    void loadFromFile(const ImportSource &source);
    bool loadFromFile(const ImportSource &source, const ImportSource *device);

    // Saved forms, modelsaving.cpp.
    void save(SavedForm &form);
    void load(const SavedForm &form);

    // Requests, modelrequests.cpp and modelediting.cpp.
    ModelAnswer get(const ModelRequest &request);
    ModelAnswer set(const ModelRequest &request);

    // Undo, modelundo.cpp.
    void replaceAllFrames(const QString &path);
    void changeType(int newType);
    void apply(const ModelEdit &edit, bool redo);

    ModelHost *host = nullptr;
    int serial = 0; ///< by which events name it

    // What the base keeps.
    int objectId = 0;
    QPointF pos;
    QPointF itemPos; ///< of the graphics item, which a move by next to nothing leaves where it is
    QSizeF size{0.0, 0.0};
    int rotateType = 2;
    double degree = 0.0;
    bool isMirrored = false;
    bool isFlipped = false;
    QColor shadow; ///< invalid: no layer effects
    bool hasShape = true;
    bool isRectStale = true;
    int status = 0;
    int page = ModelHost::NoPage;
    QMap<QString, QVariant> params;

    // Its own.
    DocumentOf document = DocumentOf::Nobody;
    QList<ModelFrame> frames;
    bool isRunning = false;
    int index = 0;
    int loopsDone = 0;
    int interval = 200;
    bool keepRatio = true;
    bool mirror = false;
    bool flip = false;
    int loopCount = -1;
    bool playEnabled = true;
    bool wasRunning = false;
    int elapsedMs = 0;
    int type = -1;
    QRectF bgRect;
    ModelTile tile;
    QPointF bgPos;
    bool savedRunning = false;
    int savedIndex = 0;
    double handleSize = 0.0;
    QList<QSizeF> savedSizes;
    bool isTimerActive = false;
    int timerInterval = 200;

private:
    void placeAt(const QPointF &newPos);
    void restartTimer();
    void stop();
    void showStep(qint64 i);
    void show(int i);
    void showAndNotify(int i);
    void scaleFramesLike(int old);
    void followSize();
    void followMirror();
    void measure(ModelFrame &frame) const;
    void enterAlternate();
    void leaveAlternate();
    void startStepped(bool resume);
    void steppedTick();
    void importGif(const ImportSource &source, const ImportSource &timing);
    void setFrames(const QList<ModelFrame> &list);
    void applyType(int newType);

    ModelAnswer getAndChange(const ModelRequest &request);
    void showAsked(int id, WireReader &input);
    void setType(WireReader &input);
    ModelAnswer thumbnailAnswer() const;
    ModelAnswer insert(int after, const QString &name, int picture);
    ModelAnswer insertBlank(int after);
    ModelAnswer duplicate(int source, int target);
    ModelAnswer deleteFrame(int i);
    ModelAnswer replaceImage(WireReader &input);
    ModelAnswer move(WireReader &input);
    void copyFrom(ModelObject &other);
};
