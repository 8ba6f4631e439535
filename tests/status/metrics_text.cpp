// Parses metrics in the text format of Prometheus.
#include "tests/status/metrics_text.h"

#include <cctype>
#include <set>
#include <sstream>

#include "snapshot/text.h"

static bool isNameCharacter(char each) {
    return each == '_' || std::isalnum(static_cast<unsigned char>(each)) != 0;
}

// Takes a prefix off the text.
static bool take(std::string_view* text, std::string_view prefix) {
    if (!text->starts_with(prefix))
        return false;
    text->remove_prefix(prefix.size());
    return true;
}

static std::string_view takeName(std::string_view* text) {
    std::size_t size = 0;
    while (size < text->size() && isNameCharacter((*text)[size]))
        ++size;
    const std::string_view name = text->substr(0, size);
    text->remove_prefix(size);
    return name;
}

// Up to the closing quotation mark. After a backslash only \, " and n mean something.
static bool takeValue(std::string_view* text) {
    static constexpr std::string_view escapes = "\\\"n";
    for (; !text->empty() && text->front() != '"'; text->remove_prefix(1))
        if (take(text, "\\") && (text->empty() || escapes.find(text->front()) == std::string_view::npos))
            return false;
    return take(text, "\"");
}

static bool takeLabels(std::string_view* text) {
    std::set<std::string_view> names;
    do {
        const std::string_view name = takeName(text);
        if (name.empty() || !names.insert(name).second || !take(text, "=\"") || !takeValue(text))
            return false;
    } while (take(text, ","));
    return take(text, "}");
}

// "12", "-0.5"
static bool isNumber(std::string_view text) {
    take(&text, "-");
    const std::size_t point = text.find('.');
    const std::string_view whole = text.substr(0, point);
    const std::string_view part = point == std::string_view::npos ? "0" : text.substr(point + 1);
    static constexpr std::string_view digits = "0123456789";
    return !whole.empty() && !part.empty() && whole.find_first_not_of(digits) == std::string_view::npos &&
           part.find_first_not_of(digits) == std::string_view::npos;
}

static bool isSample(std::string_view line, std::string_view family) {
    if (family.empty() || takeName(&line) != family)
        return false;
    if (take(&line, "{") && !takeLabels(&line))
        return false;
    return take(&line, " ") && isNumber(line);
}

struct MetricsReader {
    std::set<std::string> families, series;
    std::string family;    // of the samples that may follow
    std::string announced; // by a HELP line
};

static bool readHelp(MetricsReader* reader, std::string_view line) {
    reader->family.clear();
    reader->announced = takeName(&line);
    return reader->announced.starts_with("sataraid_") && reader->families.insert(reader->announced).second &&
           take(&line, " ") && !line.empty() && line.find('\\') == std::string_view::npos;
}

static bool readLine(MetricsReader* reader, std::string_view line) {
    if (take(&line, "# HELP "))
        return readHelp(reader, line);
    if (take(&line, "# TYPE ")) {
        reader->family = reader->announced;
        return line == reader->announced + " gauge";
    }
    return isSample(line, reader->family) && reader->series.emplace(line.substr(0, line.rfind(' '))).second;
}

std::string metricsProblem(const std::string& text) {
    if (!isUtf8(text))
        return "not UTF-8";
    if (text.empty() || text.back() != '\n')
        return "no newline at the end";
    MetricsReader reader;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        if (!readLine(&reader, line))
            return "invalid line: " + line;
    return "";
}
