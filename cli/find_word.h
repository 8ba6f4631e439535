// Binary search for a command word in a sorted table.
#pragma once

#include <span>

#include "util/utils.h"

// The row whose name equals word, ignoring case; null if there is none. Rows are sorted by name in
// the order of strCmpNoCase().
template <typename Row>
const Row* findWord(std::span<const Row> rows, const char* word) {
    std::size_t low = 0, end = rows.size();
    while (low < end) {
        const std::size_t middle = low + (end - low) / 2;
        const int order = strCmpNoCase(word, rows[middle].name);
        if (order == 0)
            return &rows[middle];
        if (order > 0)
            low = middle + 1;
        else
            end = middle;
    }
    return nullptr;
}
