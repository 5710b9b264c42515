// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <unistd.h>

#include <utility>

// Owns one descriptor and closes it once.
class FileDescriptor
{
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor)
        : fd(descriptor)
    {
    }
    FileDescriptor(FileDescriptor &&other) noexcept
        : fd(std::exchange(other.fd, -1))
    {
    }
    FileDescriptor &operator=(FileDescriptor &&other) noexcept
    {
        std::swap(fd, other.fd);
        return *this;
    }
    ~FileDescriptor()
    {
        if (isValid())
            ::close(fd);
    }

    int get() const { return fd; }
    bool isValid() const { return fd >= 0; }
    // Whoever takes it closes it.
    int release() { return std::exchange(fd, -1); }

private:
    int fd = -1;
};
