// The adapters' records as data: a row for each field, derived from the records themselves. fields.cpp
// proves that every byte of a record belongs to a row.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "snapshot/snapshot.h"

enum class FieldKind : std::uint8_t {
    unsignedNumber,
    signedNumber,
    text,     // a char array; it ends at its NUL or with the field
    record,   // another record
    header,   // the ReplyHeader: about the reply, not about the object
    reserved, // bytes without a known meaning
};

struct RecordType;

struct Field {
    const char* name;
    std::size_t offset; // in the record, of the first element
    std::size_t size;   // of one element; of a text, all of it
    std::size_t count;  // elements; 1 unless the field is an array
    FieldKind kind;
    bool isArray;
    const RecordType* record; // of kind record
    const char* countedBy;    // the field that says how many elements are used; nullptr: all
};

struct RecordType {
    const char* name;
    std::size_t size;
    std::span<const Field> fields;
};

// Defined for every record that a snapshot keeps.
template <typename Record>
const RecordType& recordType();
template <>
const RecordType& recordType<VersionNumber>();
template <>
const RecordType& recordType<ControllerInfo>();
template <>
const RecordType& recordType<ControllerVersionInfo>();
template <>
const RecordType& recordType<ControllerSettings>();
template <>
const RecordType& recordType<DiscoverPathInfo>();
template <>
const RecordType& recordType<DriverInfo>();
template <>
const RecordType& recordType<BatteryInfo>();
template <>
const RecordType& recordType<EnclosureEntry>();
template <>
const RecordType& recordType<EnclosureSensor>();
template <>
const RecordType& recordType<EnclosureStatus>();
template <>
const RecordType& recordType<ExtentEntry>();
template <>
const RecordType& recordType<PhyDrvInfo>();
template <>
const RecordType& recordType<PhyDrvSettings>();
template <>
const RecordType& recordType<MediaPatrolProgress>();
template <>
const RecordType& recordType<LogDrvInfo>();
template <>
const RecordType& recordType<LogDrvSettings>();

// One element of a number field; index is below the field's count. A 64-bit unsigned number is returned as
// the signed one with the same bits. setNumberAt() stores the low bytes that the field holds.
std::int64_t numberAt(const void* record, const Field& field, std::size_t index);
void setNumberAt(void* record, const Field& field, std::size_t index, std::int64_t value);

// textAt() is valid as long as the record. setTextAt() truncates a text that does not fit, and clears the
// rest.
std::string_view textAt(const void* record, const Field& field);
void setTextAt(void* record, const Field& field, std::string_view text);

// nullptr: the record has no such field.
const Field* findField(const RecordType& type, std::string_view name);

// How many elements of a field are used, by the record's own counter: never more than the field has.
std::size_t usedCount(const RecordType& type, const void* record, const Field& field);
