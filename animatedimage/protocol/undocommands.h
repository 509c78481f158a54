#pragma once

#include "animatedimage/animatedimageglobal.h"
#include "host/undoredo.h"

#include <QtCore/QByteArray>
#include <QtCore/QPointer>

#include <functional>

class CAnimatedImage;
class QDataStream;

/// A command of two closures over one buffer: its maker writes the state before and the state
/// after into the buffer, and each closure replays one of them. Both read the buffer from its
/// start, and it never changes once filled, so they can run any number of times.
class ANIMATEDIMAGE_EXPORT CAnimatedUndoRedoCommand : public CNmUndoCmd
{
public:
    /// Copies both closures. An empty one does nothing. The host may run the command after the
    /// end of an object, so closures hold objects weakly, by QPointer. @p parent as CNmUndoCmd.
    CAnimatedUndoRedoCommand(std::function<void(QDataStream &)> &redo,
                             std::function<void(QDataStream &)> &undo,
                             QUndoCommand *parent = nullptr);
    ~CAnimatedUndoRedoCommand() override;

    void undo() override;
    void redo() override;

    /// The buffer, to be filled before the command is pushed. Owned by the command.
    QByteArray *data_ptr();

private:
    std::function<void(QDataStream &)> m_redo;
    std::function<void(QDataStream &)> m_undo;
    QByteArray m_data;
};

/// The setting that a CAnimatedImageChangeCommand changes.
enum ANIMATEDIMAGE_CHANGE_TYPE : int {
    CHANGE_SHIFT_INTERVAL = 0, ///< milliseconds between frames; the pair of ints
    CHANGE_KEEP_RATIO = 1,     ///< whether proportions are kept; the pair of bools
    CHANGE_LOOP_COUNT = 2,     ///< repetitions, -1 forever; the pair of ints
};

/// A command for one setting of an animated image. The host makes it, fills in the pair of values
/// that the setting uses, names it and pushes it.
class ANIMATEDIMAGE_EXPORT CAnimatedImageChangeCommand : public CNmUndoCmd
{
public:
    /// @p object is not owned; after its end the command does nothing, and so does one without an
    /// object or with a @p type that is none of the settings. @p parent as CNmUndoCmd.
    CAnimatedImageChangeCommand(CAnimatedImage *object, ANIMATEDIMAGE_CHANGE_TYPE type,
                                QUndoCommand *parent = nullptr);
    ~CAnimatedImageChangeCommand() override;

    void undo() override;
    void redo() override;

    void setBoolValue(bool oldValue, bool newValue);
    void setIntValue(int oldValue, int newValue);

private:
    Q_DECL_HIDDEN void apply(bool boolValue, int intValue);

    ANIMATEDIMAGE_CHANGE_TYPE m_type;
    /// Null after the end of the object, whose address may then be that of another.
    QPointer<CAnimatedImage> m_object;
    bool m_oldBool = false;
    bool m_newBool = false;
    int m_oldInt = 0;
    int m_newInt = 0;
};
