// Collects what a capture assumes, and what it lacks.
#include "tools/capture/notes.h"

#include "simulator/world/world.h"
#include "snapshot/text.h"

Place below(const Place& place, const char* key) {
    return {place.notes, place.path.empty() ? key : place.path + "." + key};
}

Place below(const Place& place, const char* list, std::size_t position) {
    Place inner = below(place, list);
    inner.path += "[" + std::to_string(position) + "]";
    return inner;
}

// The file has room for a limited number of lines, of limited length.
void noteAssumption(const Place& place, const std::string& text) {
    std::vector<std::string>& lines = place.notes->lines;
    std::string line = printable(place.path.empty() ? text : place.path + ": " + text);
    line.resize(std::min(line.size(), q5sim::kMaxAssumedLength));
    while (!isUtf8(line))
        line.pop_back();
    if (lines.size() + 1 == q5sim::kMaxAssumed)
        line = "more than can be listed here";
    if (lines.size() < q5sim::kMaxAssumed)
        lines.push_back(line);
}

void noteMissing(const Place& place, const std::string& text) {
    place.notes->complete = false;
    noteAssumption(place, text);
}
