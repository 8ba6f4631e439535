// Compares the messages of the sources with the catalogue of messages (docs/messages.md): every message
// stands in it, with the exit code that the source names, and nothing else does. What is no message is
// told by narrow rules about the place and the form of a text, or stands in listings.txt.
//   check_messages <root of the sources>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <map>
#include <regex>
#include <set>

#include "source_texts.h"

namespace {
using Codes = std::set<int>;

struct Catalogue {
    std::map<std::string, Codes> messages; // with <> in the place of what is filled in
    std::map<std::string, int> whats;      // the nouns of "Invalid <what> ..."
    Codes explained;                       // rows of the table of exit codes
};

struct Check {
    std::string root;
    std::map<std::string, int> resultCodes;
    Catalogue catalogue;
    std::map<std::string, bool> listings; // whether seen
    std::map<std::string, Codes> named;   // codes that the sources name, by message
    std::set<std::string> found, unnamed; // unnamed: where a source names no code for the message
    int texts = 0, faults = 0;
};
} // namespace

static void fault(Check* check, const std::string& where, const std::string& what, const std::string& text) {
    std::printf("%s: %s: %s\n", where.c_str(), what.c_str(), text.c_str());
    ++check->faults;
}

static std::string replaced(const std::string& text, const char* pattern, const char* by) {
    return std::regex_replace(text, std::regex(pattern), by);
}

// A format as the catalogue shows it, but for the names between the brackets.
static std::string withoutDirectives(const std::string& format) {
    const std::string filled = replaced(format, R"(%[-0-9.*]*(ll)?[a-z])", "<>");
    return replaced(replaced(filled, "%%", "%"), "<[^<>]*>", "<>");
}

static std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

static Codes codesOf(const std::string& list) {
    Codes codes;
    const std::regex number("[0-9]+");
    for (std::sregex_iterator at(list.begin(), list.end(), number), end; at != end; ++at)
        codes.insert(std::stoi(at->str()));
    return codes;
}

// Reads the catalogue. Entries that stand together must be followed by what was changed and what next.
static void readCatalogue(Check* check) {
    const std::regex entry(R"(- `(.*)` \(([0-9, ]+)\))"), what(R"( *\| `([^`]*)` \| ([0-9]+) \|.*)");
    const std::regex partial(R"( *\| `(.*)` \|)"), code(R"(\| ([0-9]+(, [0-9]+)*) \|.*)");
    const std::string name = "docs/messages.md";
    std::string last, told;
    const auto finish = [&] {
        if (!last.empty() &&
            (told.find("Changed: ") == std::string::npos || told.find("Next: ") == std::string::npos))
            fault(check, name, "does not tell what was changed and what next", last);
        last.clear();
        told.clear();
    };
    for (const std::string& line : linesOf(readWhole(check->root + "/" + name))) {
        std::smatch match;
        if (std::regex_match(line, match, entry)) {
            if (!told.empty())
                finish();
            last = match[1];
            const std::string message = replaced(last, "<[^<>]*>", "<>");
            const bool fresh = check->catalogue.messages.emplace(message, codesOf(match[2])).second;
            if (!fresh)
                fault(check, name, "stands there twice", last);
        } else if (std::regex_match(line, match, what)) {
            check->catalogue.whats[match[1]] = std::stoi(match[2]);
        } else if (std::regex_match(line, match, partial)) {
            check->catalogue.messages.emplace(replaced(match[1], "<[^<>]*>", "<>"), Codes{});
        } else if (std::regex_match(line, match, code)) {
            check->catalogue.explained.merge(codesOf(match[1]));
        } else if (line.starts_with("#")) {
            finish();
        } else {
            told += line + " ";
        }
    }
    finish();
}

static void readListings(Check* check) {
    const std::string name = "/tests/messages/listings.txt";
    for (const std::string& line : linesOf(readWhole(check->root + name)))
        if (!line.empty() && !line.starts_with("# "))
            check->listings[replaced(line, R"(\\n)", "\n")] = false;
}

static void readResultCodes(Check* check) {
    const std::regex row(R"( +([a-zA-Z]+) = ([0-9]+),.*)");
    for (const std::string& line : linesOf(readWhole(check->root + "/util/result.h"))) {
        std::smatch match;
        if (std::regex_match(line, match, row))
            check->resultCodes[match[1]] = std::stoi(match[2]);
    }
    for (const auto& [name, code] : check->resultCodes)
        if (check->catalogue.explained.count(code) == 0)
            fault(check, "util/result.h", "has no row in the table of exit codes", name);
    if (check->catalogue.explained.size() != check->resultCodes.size())
        fault(check, "docs/messages.md", "explains exit codes that there are not", "see the table");
}

static bool isOneOf(const std::string& name, std::initializer_list<const char*> names) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

namespace {
// A place whose arguments are messages, and the result that each of them ends a command with.
struct MessagePlace {
    const char* name;
    bool list; // a braced list given to it
    int argument;
    const char* result;
};
} // namespace

static const MessagePlace messagePlaces[] = {
    {"readOptions", false, 4, "badValue"},     {"parseSpeedArgs", false, 3, "badValue"},
    {"abortItems", false, 0, "badValue"},      {"applyItems", false, 3, "badValue"},
    {"parsePatrolArgs", false, 2, "badCount"}, {"dispatch", true, 2, "unknownCommand"},
    {"listActivity", true, 2, "notFound"},     {"listActivity", true, 3, "done"},
    {"listActivity", true, 4, "done"},         {"listActivity", true, 5, "done"},
    {"controlActivity", true, 3, "badCount"},  {"controlActivity", true, 4, "notFound"},
    {"controlActivity", true, 5, "done"},      {"controlActivity", true, 6, "refused"},
    {"controlPatrol", true, 1, "badCount"},    {"controlPatrol", true, 2, "refused"},
    {"reportActivity", false, 2, "done"},      {"reportActivity", false, 3, "refused"},
    {"startCheck", false, 2, "done"},          {"startCheck", false, 3, "refused"},
    {"lookupLogDrv", false, 2, "notFound"},    {"report", false, 1, "done"},
};

// The result that the source names for a message; empty where it names none.
static std::string namedResult(const SourceText& text) {
    if (text.inner.name == "fail")
        return text.inner.result;
    for (const MessagePlace& place : messagePlaces) {
        const std::string& name = place.list ? text.outer.name : text.inner.name;
        if (name == place.name && (text.inner.open == '{') == place.list &&
            text.inner.argument == place.argument)
            return place.result;
    }
    return text.variable.starts_with("noDrive") ? "notFound" : "";
}

// The same for a message that is printed before the command ends.
static std::string returnedResult(const SourceText& text) {
    return isOneOf(text.inner.name, {"printf", "puts"}) ? text.returned : "";
}

// The creation command ends with one result whatever its parser found; how it does so is looked for too.
static std::string resultSeen(const Check& check, const SourceText& text, const std::string& result) {
    if (text.file != "commands/creation.cpp" || text.function == "ActivateArray" || result.empty())
        return result;
    static const std::string source = readWhole(check.root + "/" + text.file);
    const bool asBefore = std::regex_search(
        source, std::regex(R"(PhraseCreateLogDrvArg\([^;]*!= Result::done\)\s*return Result::refused;)"));
    return asBefore ? "refused" : result;
}

static bool endsLikeSentence(const std::string& text) {
    const std::size_t last = text.find_last_not_of('\n');
    return last != std::string::npos && (text[last] == '!' || text[last] == '.');
}

// A single word: keys, value words, option letters, file names; also the frames of listings.
static bool isWord(const std::string& text) {
    return text.find(' ') == std::string::npos && !endsLikeSentence(text);
}

// Nothing but values and their units.
static bool isRow(const std::string& text) {
    const std::string rest = replaced(text, R"(%[-0-9.*]*(ll)?[a-z]|%%|MB|KB|Byte)", "");
    return rest.find_first_not_of(" \n\t\r,:#()<>0123456789x-") == std::string::npos;
}

// "Label : value", or what a label and its colon begin.
static bool isLabelled(const std::string& text) {
    static const std::regex labelled(R"([A-Z0-9][A-Za-z0-9#' ]*(#%d )?: ?([^ :].*\n?)?)");
    static const std::regex errorMessage(R"((Error|Invalid|Failed|Unable|Unknown|No|Warning)\b[\s\S]*)");
    return std::regex_match(text, labelled) && !std::regex_match(text, errorMessage) &&
           !endsLikeSentence(text);
}

// The calls whose texts do not reach the screen, or only as a label.
static bool isElsewhere(const SourceText& text) {
    if (text.inner.name == "printf" && text.inner.argument > 0)
        return true;
    return isOneOf(text.inner.name,
                   {"showWord", "showNumber", "showNumbers", "openDisplay", "append", "appendArg",
                    "appendArgs", "snprintf", "fprintf", "fscanf", "sscanf", "fopen", "strstr", "strcspn",
                    "GetStrFromFileUpTo", "FormIDStrAry", "CheckIsIncludeCharacter", "static_assert"});
}

static bool isWhat(const SourceText& text) {
    const bool option = isOneOf(text.inner.name, {"numberOption", "driveOption", "countOption"});
    return (option && text.inner.argument == 1) ||
           (text.inner.name == "TranslateStr2Int" && text.inner.argument == 0);
}

static void checkWhat(Check* check, const SourceText& text) {
    std::string result = text.inner.name == "countOption" ? "badValue" : "badId";
    // The result stands behind the noun: it is looked up where the call was written.
    if (text.inner.name == "numberOption" && text.message == text.text) {
        const std::string source = readWhole(check->root + "/" + text.file);
        const std::regex call("\"" + text.text + "\", &[A-Za-z>-]+, Result::([A-Za-z]+)");
        std::smatch match;
        if (std::regex_search(source, match, call))
            result = match[1];
    }
    const auto row = check->catalogue.whats.find(text.text);
    if (row == check->catalogue.whats.end())
        fault(check, text.file, "this value has no row in the catalogue", text.text);
    else if (row->second != check->resultCodes[result])
        fault(check, text.file, "the catalogue tells another exit code", text.text);
}

static void checkMessage(Check* check, const SourceText& text, const std::string& message,
                         const std::string& result) {
    for (const std::string& line : linesOf(withoutDirectives(message))) {
        if (line.empty())
            continue;
        check->found.insert(line);
        const std::string where = text.file + ":" + std::to_string(text.line);
        if (check->catalogue.messages.count(line) == 0)
            fault(check, where, "this message is not in the catalogue", line);
        if (result.empty())
            check->unnamed.insert(line);
        else
            check->named[line].insert(check->resultCodes.at(result));
    }
}

static void checkText(Check* check, const SourceText& text) {
    ++check->texts;
    const std::string result = namedResult(text);
    if (!result.empty() || isOneOf(text.inner.name, {"fail", "abortItems"}))
        return checkMessage(check, text, text.text, resultSeen(*check, text, result));
    if (isWhat(text))
        return checkWhat(check, text);
    if (isWord(text.text) || isRow(text.text) || isElsewhere(text) || isLabelled(text.text))
        return;
    const auto listing = check->listings.find(text.text);
    if (listing != check->listings.end())
        listing->second = true;
    else
        checkMessage(check, text, text.text, resultSeen(*check, text, returnedResult(text)));
}

// Complaints about the world of the simulated adapters and those of the hand on it.
static void checkSimulatorText(Check* check, const SourceText& text) {
    const bool error = text.inner.name == "WorldError" && text.inner.argument == 1;
    const bool wrapped = text.outer.name == "WorldError" && text.outer.argument == 1; // std::string("...")
    const bool fields = text.inner.name == "error" && text.inner.argument == 1;
    const bool told = isOneOf(text.inner.name, {"fail", "fputs"});
    ++check->texts;
    if (text.inner.name == "fprintf") {
        check->found.insert(linesOf(withoutDirectives(text.text))[0]);
        if (const auto frame = check->listings.find(text.text); frame != check->listings.end())
            frame->second = true;
    } else if (error || fields) {
        checkMessage(check, text, text.message, "");
    } else if (told && !wrapped) {
        const bool named = text.inner.name == "fail" && text.inner.argument == 1;
        checkMessage(check, text, named ? "<>: " + text.text + ": <>" : text.text, "");
    }
}

static void checkFolder(Check* check, const char* folder, void (*look)(Check*, const SourceText&)) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(check->root + "/" + folder))
        names.push_back(entry.path().lexically_relative(check->root).string());
    std::sort(names.begin(), names.end());
    for (const std::string& name : names) {
        const bool source = name.ends_with(".cpp") || name.ends_with(".h");
        if (!source || name == "cli/help_texts.h")
            continue;
        for (const SourceText& text : readSourceTexts(check->root + "/" + name, name))
            look(check, text);
    }
}

static void checkCatalogue(Check* check) {
    for (const auto& [message, codes] : check->catalogue.messages) {
        if (check->found.count(message) == 0)
            fault(check, "docs/messages.md", "nothing prints this message", message);
        const Codes& named = check->named[message];
        const bool all = check->unnamed.count(message) == 0;
        if (!std::includes(codes.begin(), codes.end(), named.begin(), named.end()) ||
            (all && !named.empty() && codes != named))
            fault(check, "docs/messages.md", "tells other exit codes than the sources", message);
    }
    for (const auto& [text, seen] : check->listings)
        if (!seen)
            fault(check, "tests/messages/listings.txt", "is in no source", text);
}

int main(int count, char** words) {
    if (count != 2) {
        std::fputs("check_messages <root of the sources>\n", stderr);
        return 2;
    }
    Check check;
    check.root = words[1];
    readCatalogue(&check);
    readListings(&check);
    readResultCodes(&check);
    for (const char* folder : {"cli", "commands", "config", "util"})
        checkFolder(&check, folder, checkText);
    checkFolder(&check, "simulator", checkSimulatorText);
    checkCatalogue(&check);
    std::printf("%d texts looked at, %zu messages in the catalogue, %d faults\n", check.texts,
                check.catalogue.messages.size(), check.faults);
    return check.faults == 0 ? 0 : 1;
}
