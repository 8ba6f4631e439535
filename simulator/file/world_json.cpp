// The world as JSON text.
#include "simulator/file/world_json.h"

#include <algorithm>

#include "simulator/file/world_keys.h"

namespace q5sim {

// The text from the bracket at open to its closing one, at close, on one line. Empty when it contains
// other brackets or gets too long.
static std::string joinLines(const std::string& text, std::size_t open, std::size_t& close) {
    static constexpr std::size_t kMaxLineLength = 100;
    std::string line(1, text[open]);
    bool quoted = false;
    for (std::size_t i = open + 1; i < text.size() && line.size() < kMaxLineLength; i++) {
        const char c = text[i];
        if (quoted && c == '\\')
            line += text[i++];
        else if (c == '"')
            quoted = !quoted;
        else if (!quoted && (c == '{' || c == '['))
            return "";
        if (quoted || c != '\n')
            line += text[i];
        else
            i = text.find_first_not_of(' ', i + 1) - 1;
        if (!quoted && c == ',')
            line += ' ';
        close = i;
        if (!quoted && (c == '}' || c == ']'))
            return line;
    }
    return "";
}

// Small records and lists of numbers on one line each, so that a world can be read and edited.
static std::string compacted(const std::string& text) {
    std::string result;
    bool quoted = false;
    for (std::size_t i = 0; i < text.size(); i++) {
        std::size_t close = i;
        const bool opens = !quoted && (text[i] == '{' || text[i] == '[');
        const std::string line = opens ? joinLines(text, i, close) : "";
        if (!line.empty()) {
            result += line;
            i = close;
            continue;
        }
        if (quoted && text[i] == '\\')
            result += text[i++];
        else if (text[i] == '"')
            quoted = !quoted;
        result += text[i];
    }
    return result;
}

std::string worldToJson(const World& world) {
    Writer io;
    describe(io, const_cast<World&>(world));
    return compacted(io.json.dump(2, ' ', false, Json::error_handler_t::replace)) + "\n";
}

static std::string pathText(const FieldPath& path) {
    std::string text;
    for (const std::string& step : path) {
        const bool position = !step.empty() && step.find_first_not_of("0123456789") == std::string::npos;
        text += position ? "[" + step + "]" : (text.empty() ? "" : ".") + step;
    }
    return text.empty() ? "" : text + ": ";
}

// Listings are in order of ID, regardless of the order in an edited file.
static void normalizeOrder(Controller& controller) {
    std::ranges::sort(controller.drives, {}, &Drive::id);
    std::ranges::sort(controller.pulledDrives, {}, &Drive::id);
    std::ranges::sort(controller.logicalDrives, {}, &LogicalDrive::logDrvId);
}

// The parser's message about a number quotes it but gives no position.
static int lineOfQuoted(const std::string& text, const std::string& message) {
    const std::size_t open = message.find('\'');
    const std::size_t close = message.rfind('\'');
    if (open == std::string::npos || open == close)
        return 1;
    const std::size_t at = text.find(message.substr(open + 1, close - open - 1));
    return at == std::string::npos ? 1 : lineOfByte(text, at);
}

// A world needs about eight levels. The parser takes memory for each one, and a malformed text can have
// millions.
static constexpr int kMaxNesting = 32;

// It also takes memory for each value, up to 200 bytes. The largest configuration, 16 controllers with 64
// drives of 16 extents and 128 logical drives each, has about 300,000.
static constexpr std::size_t kMaxValues = 1000000;

// Rejects what the parser would accept although it is invalid, or would need too much memory for. Returns
// false with error filled.
static bool checkText(const std::string& text, ValidationError& error) {
    // The parser would take a NUL for the end of the text.
    if (const std::size_t nul = text.find('\0'); nul != std::string::npos)
        error = {lineOfByte(text, nul), "this is not valid JSON"};
    else if (const std::size_t deep = findDeepNesting(text, kMaxNesting); deep != std::string::npos)
        error = {lineOfByte(text, deep), "this is nested too deeply"};
    else if (const std::size_t excess = findExcessValue(text, kMaxValues); excess != std::string::npos)
        error = {lineOfByte(text, excess), "this has too many values"};
    else
        return true;
    return false;
}

bool worldFromJson(const std::string& text, World& world, ValidationError& error) {
    try {
        World read;
        if (!checkText(text, error))
            return false;
        const ParsedJson json = ParsedJson::parse(text);
        if (const std::size_t duplicate = findDuplicateKey(text); duplicate != std::string::npos) {
            error = {lineOfByte(text, duplicate), "a key is given twice in one object"};
            return false;
        }
        Reader::readRecord(json, {}, read);
        checkWorld(read);
        for (Controller& controller : read.controllers)
            normalizeOrder(controller);
        world = std::move(read);
        return true;
    } catch (const WorldError& invalid) {
        error = {lineForPath(text, invalid.path), pathText(invalid.path) + invalid.reason};
    } catch (const ParsedJson::out_of_range& invalid) {
        error = {lineOfQuoted(text, invalid.what()), "a number is far too large"};
    } catch (const ParsedJson::parse_error& invalid) {
        error = {lineOfByte(text, invalid.byte > 0 ? invalid.byte - 1 : 0), "this is not valid JSON"};
    }
    return false;
}

} // namespace q5sim
