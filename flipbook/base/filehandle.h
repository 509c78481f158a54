#pragma once

#include <QtCore/QtGlobal>

#include <unistd.h>
#include <utility>

/// A file descriptor that is closed with its owner.
class FileHandle
{
public:
    /// Takes @p descriptor over; a negative one, as open() returns when it fails, is none.
    explicit FileHandle(int descriptor = -1)
        : m_descriptor(descriptor)
    {
    }
    FileHandle(FileHandle &&other) noexcept
        : m_descriptor(other.release())
    {
    }
    FileHandle &operator=(FileHandle &&other) noexcept
    {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }
    ~FileHandle()
    {
        if (isOpen())
            ::close(m_descriptor);
    }

    bool isOpen() const { return m_descriptor >= 0; }
    int get() const { return m_descriptor; }
    /// Gives the descriptor away: the caller closes it.
    int release() { return std::exchange(m_descriptor, -1); }

private:
    Q_DISABLE_COPY(FileHandle)

    int m_descriptor;
};
