// Compares the messages in the sources with the message catalog (docs/messages.md): the catalog lists every
// message, with the exit status that the source names, and nothing else. Texts that are not messages are
// recognized by narrow rules about their place and form, or listed in listings.txt.
//   check_messages ROOT
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

struct Catalog {
    std::map<std::string, Codes> messages; // with <> in place of conversions
    std::map<std::string, int> valueNames; // value names of "Invalid <what> ..."
    Codes explained;                       // rows of the table of exit codes
};

struct Check {
    std::string root;
    std::map<std::string, int> resultCodes;
    Catalog catalog;
    std::map<std::string, bool> listings; // whether seen
    std::map<std::string, Codes> named;   // by message, the codes that the sources name
    std::set<std::string> found, unnamed; // unnamed: messages for which a source names no code
    int texts = 0, errors = 0;
};
} // namespace

static void reportError(Check* check, const std::string& where, const std::string& what,
                        const std::string& text) {
    std::printf("%s: %s: %s\n", where.c_str(), what.c_str(), text.c_str());
    ++check->errors;
}

static std::string replaced(const std::string& text, const char* pattern, const char* by) {
    return std::regex_replace(text, std::regex(pattern), by);
}

// A format as the catalog shows it, without the names between the angle brackets.
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

// Adds a message of the catalog. Returns false if it is there already.
static bool addMessage(Check* check, const std::string& message, const Codes& codes) {
    return check->catalog.messages.emplace(replaced(message, "<[^<>]*>", "<>"), codes).second;
}

// Reads the catalog. A group of entries must be followed by what was changed and what to do next.
static void readCatalog(Check* check) {
    const std::regex entry(R"(- `(.*)` \(([0-9, ]+)\))"), what(R"( *\| `([^`]*)` \| ([0-9]+) \|.*)");
    const std::regex partial(R"( *\| `(.*)` \|)"), code(R"(\| ([0-9]+(, [0-9]+)*) \|.*)");
    const std::string name = "docs/messages.md";
    std::string last, explanation;
    const auto finish = [&] {
        if (!last.empty() && (explanation.find("Changed: ") == std::string::npos ||
                              explanation.find("Next: ") == std::string::npos))
            reportError(check, name, "does not say what was changed and what to do next", last);
        last.clear();
        explanation.clear();
    };
    for (const std::string& line : linesOf(readWhole(check->root + "/" + name))) {
        std::smatch match;
        if (std::regex_match(line, match, entry)) {
            if (!explanation.empty())
                finish();
            last = match[1];
            if (!addMessage(check, last, codesOf(match[2])))
                reportError(check, name, "is listed twice", last);
        } else if (std::regex_match(line, match, what)) {
            check->catalog.valueNames[match[1]] = std::stoi(match[2]);
        } else if (std::regex_match(line, match, partial)) {
            addMessage(check, match[1], Codes{});
        } else if (std::regex_match(line, match, code)) {
            check->catalog.explained.merge(codesOf(match[1]));
        } else if (line.starts_with("#")) {
            finish();
        } else {
            explanation += line + " ";
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
        if (check->catalog.explained.count(code) == 0)
            reportError(check, "util/result.h", "is missing from the table of exit statuses", name);
    if (check->catalog.explained.size() != check->resultCodes.size())
        reportError(check, "docs/messages.md", "lists exit statuses that do not exist", "see the table");
}

static bool isOneOf(const std::string& name, std::initializer_list<const char*> names) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

namespace {
// An argument that is a message, and the result code of a command that prints it.
struct MessagePlace {
    const char* name;
    bool list; // of a braced list passed to it
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

// The result code that the source names for a message; empty if it names none.
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

// The same for a message that is printed before a return.
static std::string returnedResult(const SourceText& text) {
    return isOneOf(text.inner.name, {"printf", "puts"}) ? text.returned : "";
}

// The creation command returns one result code for every error of its parser; this is verified too.
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

// A single word: a key, value word, option name or file name, or a frame of a listing.
static bool isWord(const std::string& text) {
    return text.find(' ') == std::string::npos && !endsLikeSentence(text);
}

// Values and their units only.
static bool isRow(const std::string& text) {
    const std::string rest = replaced(text, R"(%[-0-9.*]*(ll)?[a-z]|%%|MB|KB|Byte)", "");
    return rest.find_first_not_of(" \n\t\r,:#()<>0123456789x-") == std::string::npos;
}

// "Label : value", or a text that begins with a label and a colon.
static bool isLabeled(const std::string& text) {
    static const std::regex labeled(R"([A-Z0-9][A-Za-z0-9#' ]*(#%d )?: ?([^ :].*\n?)?)");
    static const std::regex errorMessage(R"((Error|Invalid|Failed|Unable|Unknown|No|Warning)\b[\s\S]*)");
    return std::regex_match(text, labeled) && !std::regex_match(text, errorMessage) &&
           !endsLikeSentence(text);
}

// Arguments of calls that print nothing, or only labels.
static bool isIgnoredArgument(const SourceText& text) {
    if (text.inner.name == "printf" && text.inner.argument > 0)
        return true;
    return isOneOf(text.inner.name, {"showWord", "showNumber", "showNumbers", "openDisplay", "append",
                                     "appendArg", "appendArgs", "snprintf", "fprintf", "fscanf", "sscanf",
                                     "fopen", "open", "strstr", "strcspn", "GetStrFromFileUpTo",
                                     "FormIDStrAry", "CheckIsIncludeCharacter", "static_assert"});
}

static bool isValueName(const SourceText& text) {
    const bool option = isOneOf(text.inner.name, {"numberOption", "driveOption", "countOption"});
    return (option && text.inner.argument == 1) ||
           (text.inner.name == "TranslateStr2Int" && text.inner.argument == 0);
}

static void checkValueName(Check* check, const SourceText& text) {
    std::string result = text.inner.name == "countOption" ? "badValue" : "badId";
    // The result code comes after the value name; it is looked up in the source of the call.
    if (text.inner.name == "numberOption" && text.message == text.text) {
        const std::string source = readWhole(check->root + "/" + text.file);
        const std::regex call("\"" + text.text + "\", &[A-Za-z>-]+, Result::([A-Za-z]+)");
        std::smatch match;
        if (std::regex_search(source, match, call))
            result = match[1];
    }
    const auto row = check->catalog.valueNames.find(text.text);
    if (row == check->catalog.valueNames.end())
        reportError(check, text.file, "this value is missing from the catalog", text.text);
    else if (row->second != check->resultCodes[result])
        reportError(check, text.file, "the catalog has another exit status", text.text);
}

static void checkMessage(Check* check, const SourceText& text, const std::string& message,
                         const std::string& result) {
    for (const std::string& line : linesOf(withoutDirectives(message))) {
        if (line.empty())
            continue;
        check->found.insert(line);
        const std::string where = text.file + ":" + std::to_string(text.line);
        if (check->catalog.messages.count(line) == 0)
            reportError(check, where, "this message is not in the catalog", line);
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
    if (isValueName(text))
        return checkValueName(check, text);
    if (isWord(text.text) || isRow(text.text) || isIgnoredArgument(text) || isLabeled(text.text))
        return;
    const auto listing = check->listings.find(text.text);
    if (listing != check->listings.end())
        listing->second = true;
    else
        checkMessage(check, text, text.text, resultSeen(*check, text, returnedResult(text)));
}

// Error messages of the simulator and of q5sim.
static void checkSimulatorText(Check* check, const SourceText& text) {
    const bool error = text.inner.name == "WorldError" && text.inner.argument == 1;
    const bool wrapped = text.outer.name == "WorldError" && text.outer.argument == 1; // std::string("...")
    const bool fields = text.inner.name == "error" && text.inner.argument == 1;
    const bool printed = isOneOf(text.inner.name, {"fail", "fputs"});
    ++check->texts;
    if (text.inner.name == "fprintf") {
        check->found.insert(linesOf(withoutDirectives(text.text))[0]);
        if (const auto frame = check->listings.find(text.text); frame != check->listings.end())
            frame->second = true;
    } else if (error || fields) {
        checkMessage(check, text, text.message, "");
    } else if (printed && !wrapped) {
        const bool named = text.inner.name == "fail" && text.inner.argument == 1;
        checkMessage(check, text, named ? "<>: " + text.text + ": <>" : text.text, "");
    }
}

static void checkDirectory(Check* check, const char* directory, void (*checkOne)(Check*, const SourceText&)) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(check->root + "/" + directory))
        names.push_back(entry.path().lexically_relative(check->root).string());
    std::sort(names.begin(), names.end());
    for (const std::string& name : names) {
        const bool source = name.ends_with(".cpp") || name.ends_with(".h");
        if (!source || name == "cli/help_texts.h")
            continue;
        for (const SourceText& text : readSourceTexts(check->root + "/" + name, name))
            checkOne(check, text);
    }
}

static void checkCatalog(Check* check) {
    for (const auto& [message, codes] : check->catalog.messages) {
        if (check->found.count(message) == 0)
            reportError(check, "docs/messages.md", "nothing prints this message", message);
        const Codes& named = check->named[message];
        const bool all = check->unnamed.count(message) == 0;
        if (!std::includes(codes.begin(), codes.end(), named.begin(), named.end()) ||
            (all && !named.empty() && codes != named))
            reportError(check, "docs/messages.md", "has other exit statuses than the sources", message);
    }
    for (const auto& [text, seen] : check->listings)
        if (!seen)
            reportError(check, "tests/messages/listings.txt", "is in no source", text);
}

int main(int count, char** words) {
    if (count != 2) {
        std::fputs("Usage: check_messages ROOT\n", stderr);
        return 2;
    }
    Check check;
    check.root = words[1];
    readCatalog(&check);
    readListings(&check);
    readResultCodes(&check);
    for (const char* directory : {"cli", "commands", "config", "util"})
        checkDirectory(&check, directory, checkText);
    checkDirectory(&check, "simulator", checkSimulatorText);
    checkCatalog(&check);
    std::printf("%d texts checked, %zu messages in the catalog, %d errors\n", check.texts,
                check.catalog.messages.size(), check.errors);
    return check.errors == 0 ? 0 : 1;
}
