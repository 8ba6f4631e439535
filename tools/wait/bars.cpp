// The progress display of a terminal: one line for each activity, as wide as there is room.
#include "tools/wait/bars.h"

#include <algorithm>

#include "snapshot/text.h"
#include "tools/wait/texts.h"

static constexpr std::size_t kMinBar = 8, kMaxBar = 40; // with its brackets
static constexpr std::size_t kPercentColumns = 4;
static constexpr std::size_t kMinName = 4; // with the blank before it

// What a line consists of, from left to right. Empty parts are left out.
struct BarLine {
    std::string label, number, percent, elapsed, rate, end; // number: the label without the name
    std::size_t filled;                                     // percent
};

// Wide characters begin at U+1100, whose UTF-8 has three bytes.
std::size_t columnsOf(std::string_view text) {
    std::size_t columns = 0;
    while (!text.empty()) {
        const std::size_t length = std::max<std::size_t>(1, characterLength(text));
        columns += length < 3 || text.substr(0, 3) < "\xE1\x84\x80" ? 1 : 2;
        text.remove_prefix(length);
    }
    return columns;
}

// Truncates the text; dots mark the cut.
static std::string fitted(std::string text, std::size_t columns) {
    if (columnsOf(text) <= columns)
        return text;
    const std::string dots(std::min<std::size_t>(3, columns), '.');
    std::string_view rest = text;
    std::string start;
    while (!rest.empty()) {
        const std::string_view character = rest.substr(0, std::max<std::size_t>(1, characterLength(rest)));
        if (columnsOf(start) + columnsOf(character) + dots.size() > columns)
            break;
        start += character;
        rest.remove_prefix(character.size());
    }
    return start + dots;
}

static std::string padded(const std::string& text, std::size_t columns, bool right) {
    const std::size_t own = columnsOf(text);
    const std::string blanks(columns > own ? columns - own : 0, ' ');
    return right ? blanks + text : text + blanks;
}

static std::string bar(std::size_t percent, std::size_t columns) {
    const std::size_t inner = columns - 2, filled = inner * std::min<std::size_t>(percent, 100) / 100;
    return "[" + std::string(filled, '#') + std::string(inner - filled, '-') + "]";
}

static BarLine barLine(const Track& track, std::int64_t now, std::time_t clock, bool withController) {
    BarLine line;
    line.label = barLabel(track, withController, true);
    line.number = barLabel(track, withController, false);
    line.percent = padded(percentText(track), kPercentColumns, true);
    line.elapsed = durationText(now - track.since);
    line.filled = track.progress.percent.value_or(0);
    if (track.paused)
        line.end = "paused";
    else if (const auto left = timeLeft(track.progress, now))
        line.end = "ends " + endText(clock, *left);
    if (const auto rate = progressRate(track.progress, now); rate && !track.paused)
        line.rate = rateText(*rate);
    return line;
}

// The widest text of a part, and the two blanks before it.
static std::size_t partColumns(const std::vector<BarLine>& lines, std::string BarLine::*part) {
    std::size_t columns = 0;
    for (const BarLine& line : lines)
        columns = std::max(columns, columnsOf(line.*part));
    return columns == 0 ? 0 : columns + 2;
}

// How many columns each part gets; 0: it is left out. All lines are laid out alike.
struct Layout {
    std::size_t label, bar, elapsed, rate, end;
};

// In narrow terminals names are cut first; then the rate, the elapsed time, the bar and the end are left out.
// The bar gets the remaining columns.
static Layout layOut(const std::vector<BarLine>& lines, std::size_t columns) {
    Layout layout = {};
    const std::size_t label = partColumns(lines, &BarLine::label) - 2;
    std::size_t used = partColumns(lines, &BarLine::number) + kPercentColumns;
    const auto leftOver = [&] { return used < columns ? columns - used : 0; };
    const auto add = [&](std::size_t Layout::*part, std::size_t wanted) {
        layout.*part = leftOver() >= wanted ? wanted : 0;
        used += layout.*part;
    };
    layout.label = used - 2 - kPercentColumns;
    add(&Layout::end, partColumns(lines, &BarLine::end));
    add(&Layout::bar, kMinBar + 2);
    add(&Layout::elapsed, partColumns(lines, &BarLine::elapsed));
    add(&Layout::rate, partColumns(lines, &BarLine::rate));
    const std::size_t name = std::min(label - layout.label, leftOver());
    used += name;
    layout.label += name;
    if (layout.bar > 0)
        layout.bar = std::min(kMaxBar + 2, layout.bar + leftOver());
    const std::size_t others = 2 + kPercentColumns;
    layout.label = std::min(layout.label, columns > others ? columns - others : 0);
    return layout;
}

static std::string part(const std::string& text, std::size_t columns) {
    return columns == 0 ? "" : "  " + padded(text, columns - 2, false);
}

// The number takes precedence over the name. A name that would be cut to almost nothing is left out.
static std::string labelText(const BarLine& line, std::size_t columns) {
    const std::size_t number = columnsOf(line.number);
    if (columnsOf(line.label) <= columns)
        return line.label;
    if (columns < number + kMinName)
        return fitted(line.number, columns);
    return line.number + fitted(line.label.substr(line.number.size()), columns - number);
}

static std::string lineText(const BarLine& line, const Layout& layout, std::size_t columns) {
    std::string text = line.percent.substr(line.percent.find_first_not_of(' '));
    if (layout.label > 0)
        text = padded(labelText(line, layout.label), layout.label, false) +
               part(layout.bar > 0 ? bar(line.filled, layout.bar - 2) : "", layout.bar) + "  " + line.percent;
    text += part(line.elapsed, layout.elapsed) + part(line.rate, layout.rate) + part(line.end, layout.end);
    return fitted(text.substr(0, text.find_last_not_of(' ') + 1), columns);
}

std::vector<std::string> progressBars(const Watch& watch, std::int64_t now, std::time_t clock,
                                      const BarOptions& options) {
    const std::size_t maxLines = std::max(2u, options.rows) - 1, columns = std::max(2u, options.columns) - 1;
    const std::size_t all = watch.tracks.size(), shown = all <= maxLines ? all : maxLines - 1;
    std::vector<BarLine> lines;
    for (std::size_t i = 0; i < shown; ++i)
        lines.push_back(barLine(watch.tracks[i], now, clock, options.withController));
    std::vector<std::string> texts;
    if (!lines.empty()) {
        const Layout layout = layOut(lines, columns);
        for (const BarLine& line : lines)
            texts.push_back(lineText(line, layout, columns));
    }
    if (shown < all)
        texts.push_back(fitted("and " + std::to_string(all - shown) + " more", columns));
    return texts;
}
