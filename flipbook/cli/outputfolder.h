#pragma once

#include <QtCore/QString>

/// A folder of results that appears whole or not at all: it is filled beside its place under
/// another name, and put there by commit(). Without that everything in it is removed.
class OutputFolder
{
public:
    /// @throw Failure when something is at @p path that is not an empty folder, or when no folder
    /// can be made beside it.
    explicit OutputFolder(const QString &path);
    ~OutputFolder();

    /// Where to write, without a separator at its end.
    QString path() const { return m_temporary; }

    /// @throw Failure
    void commit();

private:
    Q_DISABLE_COPY(OutputFolder)

    QString m_path;
    QString m_temporary;
};
