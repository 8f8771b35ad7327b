/// Watches how many bytes each call of `fread` and `fwrite` is asked to move. The program's own
/// functions of these names, in tests/files/StreamCalls.cpp, stand in front of the C library's.
#pragma once

#include <cstddef>
#include <vector>

class StreamCalls {
public:
    StreamCalls() : before(current) { current = this; }
    StreamCalls(StreamCalls const &) = delete;
    StreamCalls &operator=(StreamCalls const &) = delete;
    ~StreamCalls() { current = before; }

    /// The bytes that each call was asked for, in order, while this object was the newest.
    std::vector<std::size_t> const &Sizes() const { return sizes; }

    static void Note(std::size_t bytes)
    {
        if (current) current->sizes.push_back(bytes);
    }

private:
    std::vector<std::size_t> sizes;
    StreamCalls *const before;
    static inline StreamCalls *current = nullptr;
};
