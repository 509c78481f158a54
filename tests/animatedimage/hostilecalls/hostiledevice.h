#pragma once

#include <QtCore/QBuffer>

/// A device in memory that lacks what a request needs.
class HostileDevice : public QBuffer
{
public:
    enum Kind {
        Plain,
        Closed,
        ReadOnly,
        WriteOnly,
        Sequential,   ///< like a pipe: no positions
        Unseekable,   ///< has positions and refuses to change them
        FailsReading, ///< after some of its bytes
        FailsWriting, ///< takes no byte
    };

    /// @p whole is how many bytes can be read from one that fails.
    HostileDevice(Kind kind, const QByteArray &bytes, qint64 whole);

    bool isSequential() const override { return m_kind == Sequential; }
    bool seek(qint64 position) override;
    qint64 bytesAvailable() const override;

protected:
    qint64 readData(char *data, qint64 most) override;
    qint64 writeData(const char *data, qint64 count) override;

private:
    Kind m_kind;
    qint64 m_left;
};
