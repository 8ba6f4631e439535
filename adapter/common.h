// Shared by all records and operations of the adapter library: compile-time layout checks, the address
// of a controller and the header of every reply.
//
// Records are binary formats of the closed library libzvq5plugin.so, little-endian. Fields named
// reservedNN (NN is their offset) belong to the library: they are cleared before a call and written
// back unchanged.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>

static_assert(std::endian::native == std::endian::little, "records are passed in host byte order");

#define ASSERT_SIZE(Record, bytes)            \
    static_assert(sizeof(Record) == (bytes)); \
    static_assert(std::is_standard_layout_v<Record> && std::is_trivially_copyable_v<Record>)
#define ASSERT_OFFSET(Record, field, offset) static_assert(offsetof(Record, field) == (offset))

// Identifies a controller; first argument of every device operation, passed by value.
struct HbaAddress {
    std::uint16_t controllerId; // from 0
    std::uint8_t reserved2[6];
};
ASSERT_SIZE(HbaAddress, 8);

// The address of the controller with this ID, of which only the low 16 bits are used.
constexpr HbaAddress hbaAddress(std::uint32_t controllerId) {
    return {static_cast<std::uint16_t>(controllerId), {}};
}

// Calls an operation on one record. Tables point to this instead of to the operation, whose address
// would have to be resolved at program start: a library that lacks an unused operation would not load.
template <auto operation, typename Record>
int invoke(HbaAddress address, const Record* record) {
    return operation(address, 0, record);
}

// Starts every reply buffer; the records follow it.
struct ReplyHeader {
    std::uint8_t reserved0[36];
    std::uint32_t bytesUsed; // of the whole buffer, this header included
    std::uint8_t reserved40[24];
};
ASSERT_SIZE(ReplyHeader, 64);
ASSERT_OFFSET(ReplyHeader, bytesUsed, 36);
