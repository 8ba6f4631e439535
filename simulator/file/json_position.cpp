// Finds the line of a value in a JSON text, so that an error in a hand-edited file names its line. Except
// for findDeepNesting and findExcessValue, the text has been parsed before, so nothing is checked here.
#include <algorithm>
#include <set>

#include "simulator/file/world_json.h"

namespace q5sim {

static void skipBlanks(const std::string& text, std::size_t& at) {
    while (at < text.size() && (text[at] == ' ' || text[at] == '\t' || text[at] == '\n' || text[at] == '\r'))
        at++;
}

// Skips a string and returns its raw characters; our own keys need no escapes.
static std::string parseString(const std::string& text, std::size_t& at) {
    const std::size_t start = ++at;
    while (at < text.size() && text[at] != '"')
        at += text[at] == '\\' ? 2u : 1u;
    const std::size_t end = std::min(at, text.size());
    at = end + 1;
    return text.substr(start, end - start);
}

static void skipValue(const std::string& text, std::size_t& at) {
    int depth = 0;
    while (at < text.size()) {
        const char c = text[at];
        if (c == '"') {
            parseString(text, at);
        } else {
            if (depth == 0 && (c == ',' || c == '}' || c == ']'))
                return;
            depth += c == '{' || c == '[' ? 1 : c == '}' || c == ']' ? -1 : 0;
            at++;
        }
        if (depth == 0 && (c == '"' || c == '}' || c == ']'))
            return;
    }
}

// Moves from the start of an object or list to the value at the key or position step.
static bool enter(const std::string& text, std::size_t& at, const std::string& step) {
    const bool object = at < text.size() && text[at] == '{';
    if (!object && (at >= text.size() || text[at] != '['))
        return false;
    at++;
    for (std::size_t position = 0; at < text.size(); position++) {
        skipBlanks(text, at);
        if (at >= text.size() || text[at] == '}' || text[at] == ']')
            return false;
        std::string key = object ? parseString(text, at) : std::to_string(position);
        skipBlanks(text, at);
        if (object && at < text.size() && text[at] == ':')
            at++;
        skipBlanks(text, at);
        if (key == step)
            return true;
        skipValue(text, at);
        skipBlanks(text, at);
        if (at < text.size() && text[at] == ',')
            at++;
    }
    return false;
}

// The offset of the first character outside strings at which stop returns true; npos: there is none.
template <typename Stop>
static std::size_t findOutsideStrings(const std::string& text, Stop stop) {
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] == '"')
            parseString(text, at);
        else if (stop(text[at]))
            return at;
        else
            at++;
    }
    return std::string::npos;
}

std::size_t findDeepNesting(const std::string& text, int limit) {
    int depth = 0;
    return findOutsideStrings(text, [&](char c) {
        depth += c == '{' || c == '[' ? 1 : c == '}' || c == ']' ? -1 : 0;
        return depth > limit;
    });
}

std::size_t findExcessValue(const std::string& text, std::size_t limit) {
    std::size_t values = 1;
    return findOutsideStrings(text, [&](char c) {
        values += c == '{' || c == '[' || c == ',' ? 1 : 0;
        return values > limit;
    });
}

std::size_t findDuplicateKey(const std::string& text) {
    std::vector<std::set<std::string>> open; // keys so far of each enclosing object
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] == '{' || text[at] == '[')
            open.emplace_back();
        else if (text[at] == '}' || text[at] == ']')
            open.pop_back();
        if (text[at] != '"') {
            at++;
            continue;
        }
        const std::size_t start = at;
        const std::string word = parseString(text, at);
        skipBlanks(text, at);
        if (at >= text.size() || text[at] != ':')
            continue;
        if (!open.back().insert(word).second)
            return start;
    }
    return std::string::npos;
}

int lineOfByte(const std::string& text, std::size_t offset) {
    const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(offset, text.size()));
    return 1 + static_cast<int>(std::count(text.begin(), end, '\n'));
}

int lineForPath(const std::string& text, const FieldPath& path) {
    std::size_t at = 0, found = 0;
    skipBlanks(text, at);
    found = at;
    for (const std::string& step : path) {
        if (!enter(text, at, step))
            break;
        found = at;
    }
    return lineOfByte(text, found);
}

} // namespace q5sim
