/// A file descriptor that is closed on every way out. Private to the Linux half of the platform layer.
#pragma once

#include <unistd.h>
#include <utility>

namespace Platform::Posix {

class Descriptor {
public:
    explicit Descriptor(int opened = -1) : number(opened) {}
    Descriptor(Descriptor &&other) noexcept : number(std::exchange(other.number, -1)) {}
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(number, other.number);
        return *this;
    }
    ~Descriptor() { Close(); }

    explicit operator bool() const { return number >= 0; }
    int Get() const { return number; }
    int Release() { return std::exchange(number, -1); }

    /// False if the system lost something that was written; network file systems tell only now.
    bool Close() { return number < 0 || close(Release()) == 0; }

private:
    int number;
};

} // namespace Platform::Posix
