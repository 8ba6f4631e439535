// Lists of IDs: as users type them, as listings show them, and as integers to sort and search.
#pragma once

#include <cstdint>

inline constexpr int kMaxListItems = 16;        // that a typed list is read for
inline constexpr std::uint32_t kNoIdItem = 255; // an item typed as "-"

// Cuts a list in place into its items, at most 16: items[0 .. *count - 1] point into text, the
// other entries are null. Items may be quoted or parenthesised.
void FormIDStrAry(char* text, int* count, char** items);

// Reads a list, cutting text in place: decimal numbers, or "-" for kNoIdItem. values has room for
// 16. Returns 0 after a message when there is no item or one is neither.
int BlockIDStr2Int(int* count, std::uint32_t* values, char* text);

// Reads numbers that single characters separate: "1,2" is 1 and 2, "1, 2" is 1, 0 and 2. values has
// room for 16; what stands beyond is ignored. A null text prints a message.
void TranslateIDList(int* count, std::uint32_t* values, const char* text);

// The same for a caller with another room.
void TranslateIDListUpTo(int room, int* count, std::uint32_t* values, const char* text);

// Shows IDs such as "(1,2,-)", 255 being "-". The first adds one to every other ID in the caller's
// list, the second shows them as they are. Each returns its own static buffer, overwritten by the
// next call; what does not fit its 80 bytes is left out.
const char* BlockIDsString(int count, std::uint8_t* ids);
const char* BlockExtentIDsString(int count, const std::uint8_t* ids);

// Sorts list[first .. last] ascending.
void MergeSortIntegerList(int* list, int first, int last);

// Merges the sorted neighbours list[first .. middle] and list[middle + 1 .. last].
void MergeIntegerList(int* list, int first, int middle, int last);

// 1 when value is among the first count entries.
int SearchItemIntList(const std::uint32_t* list, int count, std::uint32_t value);
