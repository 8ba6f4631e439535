// Lists of IDs: parsing, formatting, sorting and searching.
#pragma once

#include <cstdint>

inline constexpr int kMaxListItems = 16;        // read from a list on the command line
inline constexpr std::uint32_t kNoIdItem = 255; // the item "-"

// Splits a list in place into at most 16 items: items[0 .. *count - 1] point into text, the other
// entries are null. Items may be quoted or parenthesized.
void FormIDStrAry(char* text, int* count, char** items);

// Parses a list of decimal numbers, or "-" for kNoIdItem, splitting text in place. values holds 16
// numbers. Returns 0 after a message if there is no item or an item is invalid.
int BlockIDStr2Int(int* count, std::uint32_t* values, char* text);

// Parses numbers separated by single characters: "1,2" is 1 and 2, "1, 2" is 1, 0 and 2. values holds
// 16 numbers; the rest is ignored. A null text prints a message.
void TranslateIDList(int* count, std::uint32_t* values, const char* text);

// The same for another capacity.
void TranslateIDListUpTo(int capacity, int* count, std::uint32_t* values, const char* text);

// Format IDs as "(1,2,-)", 255 as "-". The first adds one to every other ID in the caller's list; the
// second leaves the IDs unchanged. Each returns its own static buffer, overwritten by the next call;
// IDs that do not fit in its 80 bytes are left out.
const char* BlockIDsString(int count, std::uint8_t* ids);
const char* BlockExtentIDsString(int count, const std::uint8_t* ids);

// Sorts list[first .. last] ascending.
void MergeSortIntegerList(int* list, int first, int last);

// Merges the adjacent sorted ranges list[first .. middle] and list[middle + 1 .. last].
void MergeIntegerList(int* list, int first, int middle, int last);

// Returns 1 if value is among the first count entries, else 0.
int SearchItemIntList(const std::uint32_t* list, int count, std::uint32_t value);
