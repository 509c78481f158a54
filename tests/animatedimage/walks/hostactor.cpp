#include "animatedimage/protocol/undocommands.h"
#include "framework/framework.h"
#include "tests/animatedimage/walks/actor.h"

#include <QtCore/QBuffer>

namespace
{

/// A device that can only be read on and on, such as a pipe.
class Pipe : public QIODevice
{
public:
    explicit Pipe(const QByteArray &bytes)
        : m_bytes(bytes)
    {
        open(ReadOnly);
    }

    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override
    {
        return m_bytes.size() - m_read + QIODevice::bytesAvailable();
    }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        const qint64 count = qMin(maxSize, m_bytes.size() - m_read);
        memcpy(data, m_bytes.constData() + m_read, size_t(count));
        m_read += count;
        return count > 0 ? count : -1;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_bytes;
    qint64 m_read = 0;
};

bool send(const Step &step, CAnimatedImage *object, QDataStream &stream)
{
    stream.setByteOrder(step.order());
    if (step.hasBadStatus)
        stream.setStatus(QDataStream::ReadCorruptData);
    if (step.op == Step::SendAttribute)
        return object->SetAttribute(step.id, stream, step.flag);
    if (step.op == Step::GetProperty)
        return object->GetSpecialProperty(step.id, stream);
    return object->SetSpecialProperty(step.id, stream, step.flag);
}

qint64 handleOf(CBaseObject *object)
{
    return reinterpret_cast<qint64>(static_cast<CGDRootObject *>(object));
}

} // namespace

Found Actor::request(const Step &step, CAnimatedImage *object)
{
    static const char notAnObject[64] = {};
    const QVector<qint64> handles{0, handleOf(object), handleOf(m_objects[size_t(1 - step.object)]),
                                  handleOf(&m_plainObject), reinterpret_cast<qint64>(notAnObject)};
    Found found;
    found.bufferBefore = Wire::bytes(step.input, step.order(), handles);
    found.bufferBefore.chop(step.missing);
    if (!step.goesToStart())
        found.bufferBefore.prepend(QByteArray(step.before, '\xa5'));
    found.bufferBefore.append(QByteArray(step.bytesAfter, '\x5a'));
    found.answerAt = step.before;
    found.buffer = found.bufferBefore;
    if (step.device == Step::Sequential) {
        Pipe pipe(found.buffer.mid(step.before));
        QDataStream stream(&pipe);
        found.result = send(step, object, stream);
        found.status = stream.status();
        return found;
    }
    QBuffer buffer(&found.buffer);
    buffer.open(step.device == Step::ReadOnlyBuffer ? QIODevice::ReadOnly : QIODevice::ReadWrite);
    // A buffer would grow to a place after its end.
    buffer.seek(qMin(qint64(step.before), buffer.size()));
    QDataStream stream(&buffer);
    found.result = send(step, object, stream);
    found.status = stream.status();
    return found;
}

void Actor::sendAttributes(int page, int id)
{
    for (CAnimatedImage *object : m_objects) {
        QDataStream noInput{QByteArray()};
        if (pageOf(object) == m_pages[size_t(page)].get())
            object->SetAttribute(id, noInput, false);
    }
}

void Actor::pushChange(const Step &step, CAnimatedImage *object)
{
    auto *command =
        new CAnimatedImageChangeCommand(object, static_cast<ANIMATEDIMAGE_CHANGE_TYPE>(step.id));
    // The pair that the setting does not use holds what would be noticed.
    const bool isFlag = step.id == CHANGE_KEEP_RATIO;
    command->setIntValue(isFlag ? 9999 : step.number, isFlag ? 9999 : step.second);
    command->setBoolValue(isFlag ? step.number != 0 : step.flag,
                          isFlag ? step.second != 0 : step.flag);
    command->setText(QStringLiteral("change of setting %1").arg(step.id));
    CUndoRedo::GetInstance()->push(command);
}

Found Actor::host(const Step &step, CAnimatedImage *object)
{
    Framework &framework = Framework::instance();
    switch (step.op) {
    case Step::Undo:
        framework.undoStack()->undo();
        break;
    case Step::Redo:
        framework.undoStack()->redo();
        break;
    case Step::OpenMacro:
        framework.openUndoMacro(QStringLiteral("a macro"));
        break;
    case Step::CloseMacro:
        framework.closeUndoMacro();
        break;
    case Step::PushChange:
        pushChange(step, object);
        break;
    case Step::Present:
        sendAttributes(step.number, 2804);
        m_documents[size_t(step.number)].setAlternateMode(step.second);
        break;
    case Step::Edit:
        m_documents[size_t(step.number)].setAlternateMode(0);
        sendAttributes(step.number, 2805);
        break;
    case Step::SetMode:
        m_documents[size_t(step.number)].setAlternateMode(step.second);
        break;
    case Step::PutOnPage:
        m_pages[size_t(step.number)]->addObject(object);
        break;
    case Step::TakeOffPage:
        if (StagePage *page = pageOf(object))
            page->takeObject(object);
        break;
    default: {
        CAnimatedImage *next = newObject();
        if (StagePage *page = pageOf(object))
            page->addObject(next);
        putInPlace(step.object, next, step.flag);
        break;
    }
    }
    return {};
}
