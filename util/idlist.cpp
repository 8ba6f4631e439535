// Parsing, formatting, sorting and searching lists of IDs.
#include "util/idlist.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "util/utils.h"

static const char kBlanks[] = " \t\r\n";

static char* skipBlanks(char* text) {
    return text + std::strspn(text, kBlanks);
}

// The end of the item that starts at *start, after skipping an opening quote or parenthesis.
//
// Compatibility: the first character never ends the item, so an empty quoted item is not recognized.
static char* itemEnd(char** start) {
    const char* stops = " ,)\t\r\n";
    if (**start == '"' || **start == '(') {
        stops = **start == '"' ? "\"" : "),";
        ++*start;
    }
    char* second = **start == '\0' ? *start : *start + 1;
    return second + std::strcspn(second, stops);
}

void FormIDStrAry(char* text, int* count, char** items) {
    *count = 0;
    for (int i = 0; i < kMaxListItems; ++i)
        items[i] = nullptr;
    char* next = skipBlanks(text);
    while (*next != '\0' && *count < kMaxListItems) {
        char* start = next;
        char* end = itemEnd(&start);
        items[(*count)++] = start;
        if (*end == '\0')
            return;
        *end = '\0';
        next = skipBlanks(end + 1);
    }
}

int BlockIDStr2Int(int* count, std::uint32_t* values, char* text) {
    char* items[kMaxListItems];
    FormIDStrAry(text, count, items);
    if (*count == 0) {
        std::puts("No block ID specified!");
        return 0;
    }
    for (int i = 0; i < *count; ++i) {
        if (IsValidDecString(items[i]))
            values[i] = static_cast<std::uint32_t>(atoiText(items[i]));
        else if (items[i][0] == '-')
            values[i] = kNoIdItem;
        else {
            std::printf("Invalid block ID '%s' specified!\n", items[i]);
            return 0;
        }
    }
    return 1;
}

// Parses the number at *text and moves *text past all its digits. Only the first eight digits count; 0
// if there are none.
static std::uint32_t parseNumber(const char** text) {
    std::uint32_t number = 0;
    for (int digits = 0; **text >= '0' && **text <= '9'; ++*text, ++digits)
        if (digits < 8)
            number = number * 10 + static_cast<std::uint32_t>(**text - '0');
    return number;
}

void TranslateIDListUpTo(int capacity, int* count, std::uint32_t* values, const char* text) {
    *count = 0;
    if (text == nullptr) {
        std::puts("No ID specified!");
        return;
    }
    while (*text != '\0' && *count < capacity) {
        values[(*count)++] = parseNumber(&text);
        if (*text != '\0')
            ++text; // any one character is a separator
    }
}

void TranslateIDList(int* count, std::uint32_t* values, const char* text) {
    TranslateIDListUpTo(kMaxListItems, count, values, text);
}

// Formats the list, adding first to every ID.
static const char* formatIds(char (&text)[80], int count, const std::uint8_t* ids, int first) {
    std::size_t length = 0;
    text[length++] = '(';
    for (int i = 0; i < count; ++i) {
        char entry[8];
        const char* separator = i == 0 ? "" : ",";
        if (ids[i] == kNoIdItem)
            std::snprintf(entry, sizeof entry, "%s-", separator);
        else
            std::snprintf(entry, sizeof entry, "%s%d", separator, ids[i] + first);
        const std::size_t entryLength = std::strlen(entry);
        if (length + entryLength + sizeof ")" > sizeof text)
            break;
        std::memcpy(text + length, entry, entryLength);
        length += entryLength;
    }
    text[length] = ')';
    text[length + 1] = '\0';
    return text;
}

const char* BlockIDsString(int count, std::uint8_t* ids) {
    static char text[80];
    formatIds(text, count, ids, 1);
    for (int i = 0; i < count; ++i)
        if (ids[i] != kNoIdItem)
            ++ids[i];
    return text;
}

const char* BlockExtentIDsString(int count, const std::uint8_t* ids) {
    static char text[80];
    return formatIds(text, count, ids, 0);
}

void MergeSortIntegerList(int* list, int first, int last) {
    if (first >= last)
        return;
    const int middle = (first + last) / 2;
    MergeSortIntegerList(list, first, middle);
    MergeSortIntegerList(list, middle + 1, last);
    MergeIntegerList(list, first, middle, last);
}

void MergeIntegerList(int* list, int first, int middle, int last) {
    int* work = static_cast<int*>(std::malloc(static_cast<std::size_t>(last - first + 1) * sizeof *work));
    if (work == nullptr)
        return;
    int left = first, right = middle + 1, merged = 0;
    while (left <= middle && right <= last)
        work[merged++] = list[left] < list[right] ? list[left++] : list[right++];
    while (left <= middle)
        work[merged++] = list[left++];
    while (right <= last)
        work[merged++] = list[right++];
    std::memcpy(list + first, work, static_cast<std::size_t>(merged) * sizeof *work);
    std::free(work);
}

int SearchItemIntList(const std::uint32_t* list, int count, std::uint32_t value) {
    for (int i = 0; i < count; ++i)
        if (list[i] == value)
            return 1;
    return 0;
}
