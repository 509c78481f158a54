#pragma once

#include "flipbook/object/plugin.h"
#include "host/undoredo.h"

#include <QtCore/QPointer>

/// A value of the settings panel is changed. Values of one setting that follow each other, as from
/// a slider, are one step.
class SettingCommand : public CNmUndoCmd
{
public:
    /// @p before and @p after are value texts of the setting @p id, as the panel's answer has them.
    /// @p plugin must outlive the command.
    SettingCommand(const QString &text, const Plugin &plugin, CBaseObject &object,
                   const QString &id, const QString &before, const QString &after);

    void undo() override;
    void redo() override;
    int id() const override;
    bool mergeWith(const QUndoCommand *next) override;

private:
    void restoreLoopCount();

    const Plugin &m_plugin;
    QPointer<CBaseObject> m_object;
    QString m_id;
    QString m_before;
    QString m_after;
    int m_loopCountBefore;
};
