// What every record and operation of the adapter library shares: the compile-time proofs of a
// record's layout, the address of a controller and the header that opens each reply.
//
// Records are wire formats of the closed library libzvq5plugin.so, little-endian as the machines it
// exists for. Stretches named reservedNN (NN is their offset) are the library's own: they are
// cleared before a call and travel back unchanged.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>

static_assert(std::endian::native == std::endian::little, "records are passed as they lie in memory");

#define ASSERT_SIZE(Record, bytes)            \
    static_assert(sizeof(Record) == (bytes)); \
    static_assert(std::is_standard_layout_v<Record> && std::is_trivially_copyable_v<Record>)
#define ASSERT_OFFSET(Record, field, offset) static_assert(offsetof(Record, field) == (offset))

// Names one controller; first argument of every device operation, passed by value.
struct HbaAddress {
    std::uint16_t controllerId; // from 0
    std::uint8_t reserved2[6];
};
ASSERT_SIZE(HbaAddress, 8);

// The address of a controller by its typed ID, of which the low 16 bits count.
constexpr HbaAddress hbaAddress(std::uint32_t controllerId) {
    return {static_cast<std::uint16_t>(controllerId), {}};
}

// An operation on one record, as a function of ours for tables to point at. An operation's own address
// would have to be resolved when the program starts, and a library that lacks one nobody uses would
// not load.
template <auto operation, typename Record>
int invoke(HbaAddress address, const Record* record) {
    return operation(address, 0, record);
}

// Opens every reply buffer; the records proper follow it.
struct ReplyHeader {
    std::uint8_t reserved0[36];
    std::uint32_t bytesUsed; // of the whole buffer, this header included
    std::uint8_t reserved40[24];
};
ASSERT_SIZE(ReplyHeader, 64);
ASSERT_OFFSET(ReplyHeader, bytesUsed, 36);
