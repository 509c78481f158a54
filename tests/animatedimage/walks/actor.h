#pragma once

#include "tests/animatedimage/walks/modelworld.h"
#include "tests/animatedimage/walks/stagepage.h"
#include "tests/support/stage.h"

#include <memory>

/// What a step gave back, as far as the model speaks of it.
struct Found {
    bool result = true;
    QString text;
    QByteArray bufferBefore;
    QByteArray buffer;
    QDataStream::Status status = QDataStream::ReadCorruptData; ///< of the stream of a request
    int answerAt = 0;  ///< where an answer that is not at the start begins
    QString complaint; ///< what a step itself found wrong, in words
};

/// The two objects of a walk on their pages, and the steps done with them as a host does.
class Actor
{
public:
    Actor();

    /// New objects, numbered as those of a new model, and everything around them as at first.
    void begin();
    /// Releases the objects. Each begin() is followed by an end().
    void end();

    /// Does a step. @p expected is what the model expects of it.
    Found perform(const Step &step, const Outcome &expected, const ModelWorld &model);

    CAnimatedImage *object(int slot) { return m_objects[size_t(slot)]; }
    /// The numbers of the objects of a page, from bottom to top.
    QList<int> objectsOf(int page) const;

private:
    Found playback(const Step &step, CAnimatedImage *object);
    Found geometry(const Step &step, CAnimatedImage *object);
    Found content(const Step &step, CAnimatedImage *object);
    Found request(const Step &step, CAnimatedImage *object);
    Found host(const Step &step, CAnimatedImage *object);
    Found copyByStream(const Step &step, const Outcome &expected);
    Found copyByJson(const Step &step, const Outcome &expected);
    Found compareThumbnails(const Step &step, CAnimatedImage *object, const ModelObject &model);
    Found comparePainting(const Step &step, CAnimatedImage *object, ModelObject model);

    CAnimatedImage *newObject();
    void putInPlace(int slot, CAnimatedImage *object, bool dropCommands);
    void release(CAnimatedImage *object, bool dropCommands);
    Document *documentOf(int slot);
    void setKeepsImagesInline(bool keepsInline);
    void sendAttributes(int page, int id);
    void pushChange(const Step &step, CAnimatedImage *object);
    StagePage *pageOf(const CAnimatedImage *object);

    std::array<StageDocument, ModelHost::Pages> m_documents;
    std::array<std::unique_ptr<StagePage>, ModelHost::Pages> m_pages;
    std::array<CAnimatedImage *, 2> m_objects{nullptr, nullptr};
    CBaseObject m_plainObject;
    int m_nextSerial = 1;
};
