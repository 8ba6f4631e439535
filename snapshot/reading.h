// One call to the adapters for the snapshot: a cleared buffer with guard bytes after it, and the faults
// that the reply shows.
#pragma once

#include <algorithm>
#include <iterator>
#include <memory>

#include "adapter/reply.h"
#include "snapshot/operations.h"
#include "snapshot/snapshot.h"

inline constexpr std::size_t kGuardSize = 256;
inline constexpr std::uint8_t kGuardByte = 0xA5;

// A reply buffer. The adapter is passed the size of the record only.
template <typename Record>
struct Guarded {
    Record record = {};
    std::uint8_t guard[kGuardSize];
    Guarded() { std::fill(std::begin(guard), std::end(guard), kGuardByte); }
    bool isIntact() const {
        return std::all_of(std::begin(guard), std::end(guard),
                           [](std::uint8_t byte) { return byte == kGuardByte; });
    }
};

// The controller being read, and where its faults go.
struct Reading {
    HbaAddress address;
    Faults* faults;
};

template <auto operation>
void addFault(Faults* faults, FaultKind kind, std::int64_t value) {
    faults->push_back({ReadOnlyOperation<operation>::name, kind, value});
}

// Calls an operation that fills one record: call(record) returns its result. Returns whether it succeeded. If
// it wrote beyond the record, that is a fault, and the record itself is used.
template <auto operation, typename Record, typename Call>
bool readRecord(Faults* faults, Guarded<Record>* reply, Call call) {
    const int result = call(&reply->record);
    if (result != 0)
        addFault<operation>(faults, FaultKind::refused, result);
    if (!reply->isIntact())
        addFault<operation>(faults, FaultKind::overrun, static_cast<std::int64_t>(sizeof(Record)));
    return result == 0;
}

// The usual shape: controller, the reserved 0, a query, the reply and its size. The library gets a copy of
// the query, which it may overwrite.
template <auto operation, typename Record, typename Query>
std::optional<Record> readReply(const Reading& reading, Query query) {
    auto reply = std::make_unique<Guarded<Record>>();
    const bool done = readRecord<operation>(reading.faults, reply.get(), [&](Record* record) {
        return callReadOnly<operation>(reading.address, 0u, &query, record,
                                       static_cast<std::uint32_t>(sizeof(Record)));
    });
    return done ? std::optional<Record>(reply->record) : std::nullopt;
}

// The records of a list reply. A byte count beyond the buffer is a fault; the records in the buffer are used.
template <auto operation, typename Record, std::size_t capacity, typename Query>
std::optional<std::vector<Record>> readList(const Reading& reading, Query query) {
    using List = Reply<Record, capacity>;
    auto reply = std::make_unique<Guarded<List>>();
    const bool done = readRecord<operation>(reading.faults, reply.get(), [&](List* list) {
        return callReadOnly<operation>(reading.address, 0u, &query, list,
                                       static_cast<std::uint32_t>(sizeof(List)));
    });
    if (!done)
        return std::nullopt;
    if (reply->record.header.bytesUsed > sizeof(List))
        addFault<operation>(reading.faults, FaultKind::impossible, reply->record.header.bytesUsed);
    const auto found = records(reply->record);
    return std::vector<Record>(found.begin(), found.end());
}

// A list reply to a query for one object. Its byte count is not used: the record's contents decide.
template <auto operation, typename Record, typename Query>
std::optional<Record> readOne(const Reading& reading, Query query) {
    const auto reply = readReply<operation, Reply<Record, 1>>(reading, query);
    return reply ? std::optional<Record>(reply->record[0]) : std::nullopt;
}
