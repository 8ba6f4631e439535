// The bytes of one fuzzing input, consumed piece by piece; zeroes follow at the end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

struct Bytes {
    const std::uint8_t* next;
    std::size_t left;
};

inline void takeBytes(Bytes* bytes, void* target, std::size_t size) {
    const std::size_t taken = size < bytes->left ? size : bytes->left;
    if (size == 0)
        return;
    std::memset(target, 0, size);
    if (taken == 0)
        return;
    std::memcpy(target, bytes->next, taken);
    bytes->next += taken;
    bytes->left -= taken;
}

template <typename Value>
Value takeValue(Bytes* bytes) {
    Value value;
    takeBytes(bytes, &value, sizeof value);
    return value;
}
