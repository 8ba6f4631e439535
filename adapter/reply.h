// Reading the adapter's replies: the buffer of a list reply, its records, and text fields that may lack
// a terminator.
#pragma once

#include <span>

#include "adapter/common.h"

// A buffer for a list reply of at most Capacity records. Initialize it with {} so that it is zero before
// the call, and pass sizeof as the buffer size.
template <typename Record, std::size_t Capacity>
struct Reply {
    ReplyHeader header;
    Record record[Capacity];
};

// The number of complete records according to the reply's byte count, limited to the capacity.
inline std::size_t countRecords(const ReplyHeader& header, std::size_t recordSize, std::size_t capacity) {
    const std::size_t used = header.bytesUsed;
    const std::size_t claimed = used < sizeof header ? 0 : (used - sizeof header) / recordSize;
    return claimed < capacity ? claimed : capacity;
}

// The records of a reply.
template <typename Record, std::size_t Capacity>
std::span<Record> records(Reply<Record, Capacity>& reply) {
    return {reply.record, countRecords(reply.header, sizeof(Record), Capacity)};
}

// Arguments for printf's "%.*s": a text field of a record, which may lack its terminating NUL.
#define FIELD_PRINTF_ARGS(field) static_cast<int>(sizeof(field)), (field)
