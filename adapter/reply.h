// Reading the adapter's replies: the buffer of a list reply, its records, and text fields that may
// come without a terminator.
#pragma once

#include <span>

#include "adapter/common.h"

// A list reply with room for Room records. Owned by the command that asks; start it with {} so that
// it is all zero before the call, and pass sizeof as the buffer size.
template <typename Record, std::size_t Room>
struct Reply {
    ReplyHeader header;
    Record record[Room];
};

// How many whole records a reply claims by its byte count, never more than fit.
inline std::size_t countRecords(const ReplyHeader& header, std::size_t recordSize, std::size_t room) {
    const std::size_t used = header.bytesUsed;
    const std::size_t claimed = used < sizeof header ? 0 : (used - sizeof header) / recordSize;
    return claimed < room ? claimed : room;
}

// The records a reply holds.
template <typename Record, std::size_t Room>
std::span<Record> records(Reply<Record, Room>& reply) {
    return {reply.record, countRecords(reply.header, sizeof(Record), Room)};
}

// A text field of a record for printf's "%.*s": it ends at its NUL or, lacking one, with the field.
#define FIELD_PRINTF_ARGS(field) static_cast<int>(sizeof(field)), (field)
