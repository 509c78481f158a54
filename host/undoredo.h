#pragma once

#include "host/hostglobal.h"

#include <QtCore/QString>
#include <QtWidgets/QUndoCommand>

class ILocalize;

/// The base of every command on the host's undo stack.
class HOST_API CNmUndoCmd : public QUndoCommand
{
public:
    /// @p parent, when not null, owns the command and undoes and redoes it as its own part.
    explicit CNmUndoCmd(QUndoCommand *parent = nullptr);
    ~CNmUndoCmd() override;

    /// The command's place in the history that the host lists; -1 until the host sets one.
    virtual int getIdxCmd();
    virtual void setIdxCmd(int index);

    /// What the user sees in the history: the command's text, looked up in @p localize as a
    /// string id first. @p localize may be null.
    virtual QString getActionName(ILocalize *localize) const;

private:
    int m_idxCmd = -1;
};

/// The host's undo stack.
class HOST_API CUndoRedo
{
public:
    /// The one stack of the process. Never null.
    static CUndoRedo *GetInstance();

    /// Takes ownership of @p command and runs its redo() once. Null is ignored.
    void push(CNmUndoCmd *command);

private:
    CUndoRedo() = default;
};
