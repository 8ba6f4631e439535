// Reading the limits file.
#include "tools/status/limits.h"

#include <algorithm>
#include <charconv>

#include "snapshot/text.h"

static std::string_view withoutBlanks(std::string_view text) {
    static constexpr const char* blanks = " \t\r";
    const std::size_t first = text.find_first_not_of(blanks);
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

static const LimitRow* findLimit(std::string_view key) {
    for (const LimitRow& row : kLimitRows)
        if (key == row.key)
            return &row;
    return nullptr;
}

static std::string applyValue(const LimitRow& row, std::string_view text, Limits* limits) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < row.min || value > row.max)
        return std::string(row.key) + " takes a whole number from " + std::to_string(row.min) + " to " +
               std::to_string(row.max);
    limits->*row.value = value;
    return "";
}

static std::string applyLine(std::string_view line, Limits* limits) {
    line = withoutBlanks(line.substr(0, line.find('#')));
    if (line.empty())
        return "";
    const std::size_t equals = line.find('=');
    const std::string_view key = withoutBlanks(line.substr(0, equals));
    const LimitRow* row = findLimit(key);
    if (row == nullptr)
        return "unknown limit \"" + printable(key) + "\"";
    if (equals == std::string_view::npos)
        return std::string(row->key) + " lacks \"= NUMBER\"";
    return applyValue(*row, withoutBlanks(line.substr(equals + 1)), limits);
}

Limits withMargins(Limits limits) {
    for (const LimitRow& row : kLimitRows)
        limits.*row.value = std::clamp(limits.*row.value + row.margin, row.min, row.max);
    return limits;
}

std::string applyLimits(std::string_view text, Limits* limits) {
    for (int number = 1; !text.empty(); ++number) {
        const std::size_t end = text.find('\n');
        const std::string problem = applyLine(text.substr(0, end), limits);
        if (!problem.empty())
            return "line " + std::to_string(number) + ": " + problem;
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return "";
}
