// A lexer for the subset of C++ that this tree uses, and a walk over its tokens that tracks open brackets.
#include "source_texts.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace {
struct Token {
    char kind; // 'i' identifier or number, 's' string, 'p' anything else
    std::string text;
    int line;
};

struct Lexer {
    const std::string& source;
    std::size_t at = 0;
    int line = 1;
    std::vector<Token> tokens = {};
};
} // namespace

std::string readWhole(const std::string& path) {
    std::ifstream file(path);
    if (!file) {
        std::fprintf(stderr, "%s cannot be read\n", path.c_str());
        std::exit(2);
    }
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

static char unescaped(char c) {
    switch (c) {
    case 'n':
        return '\n';
    case 't':
        return '\t';
    case 'r':
        return '\r';
    case '0':
        return '\0';
    default:
        return c;
    }
}

// Reads to the closing quote; at is just after the opening one.
static std::string readQuoted(Lexer* lexer, char quote) {
    std::string text;
    while (lexer->at < lexer->source.size() && lexer->source[lexer->at] != quote) {
        char c = lexer->source[lexer->at++];
        if (c == '\\' && lexer->at < lexer->source.size())
            c = unescaped(lexer->source[lexer->at++]);
        text += c;
    }
    ++lexer->at;
    return text;
}

static bool isNameCharacter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

static std::string readName(Lexer* lexer) {
    const std::size_t start = lexer->at;
    while (lexer->at < lexer->source.size() && isNameCharacter(lexer->source[lexer->at]))
        ++lexer->at;
    return lexer->source.substr(start, lexer->at - start);
}

// Skips blanks, comments and #include directives.
static bool skipBlank(Lexer* lexer) {
    const std::string& source = lexer->source;
    const char c = source[lexer->at];
    if (c == '\n')
        ++lexer->line;
    if (std::isspace(static_cast<unsigned char>(c)) != 0) {
        ++lexer->at;
        return true;
    }
    if (source.compare(lexer->at, 2, "//") == 0 || source.compare(lexer->at, 8, "#include") == 0) {
        lexer->at = std::min(source.find('\n', lexer->at), source.size());
        return true;
    }
    return false;
}

static void addString(Lexer* lexer, const std::string& text) {
    if (!lexer->tokens.empty() && lexer->tokens.back().kind == 's')
        lexer->tokens.back().text += text;
    else
        lexer->tokens.push_back({'s', text, lexer->line});
}

static std::vector<Token> lex(const std::string& source) {
    Lexer lexer = {source};
    while (lexer.at < source.size()) {
        if (skipBlank(&lexer))
            continue;
        const char c = source[lexer.at];
        if (c == '"') {
            ++lexer.at;
            addString(&lexer, readQuoted(&lexer, '"'));
        } else if (c == '\'') {
            ++lexer.at;
            readQuoted(&lexer, '\'');
            lexer.tokens.push_back({'i', "'", lexer.line});
        } else if (isNameCharacter(c)) {
            lexer.tokens.push_back({'i', readName(&lexer), lexer.line});
        } else {
            lexer.tokens.push_back({'p', std::string(1, c), lexer.line});
            ++lexer.at;
        }
    }
    return std::move(lexer.tokens);
}

static bool isPunctuation(const Token& token, char c) {
    return token.kind == 'p' && token.text[0] == c;
}

static const std::string& textAt(const std::vector<Token>& tokens, std::size_t at) {
    static const std::string none;
    return at < tokens.size() ? tokens[at].text : none;
}

// The name in "Result::name" at a token; empty when there is none.
static std::string resultAt(const std::vector<Token>& tokens, std::size_t at) {
    const bool named =
        textAt(tokens, at) == "Result" && textAt(tokens, at + 1) == ":" && textAt(tokens, at + 2) == ":";
    return named ? textAt(tokens, at + 3) : "";
}

// The end of the argument that contains a token: a comma or the closing bracket around it.
static std::size_t argumentEnd(const std::vector<Token>& tokens, std::size_t at) {
    int depth = 0;
    for (; at < tokens.size(); ++at) {
        const char c = tokens[at].kind == 'p' ? tokens[at].text[0] : ' ';
        if ((depth == 0 && c == ',') || c == ';')
            return at;
        if (c == '(' || c == '{' || c == '[')
            ++depth;
        if ((c == ')' || c == '}' || c == ']') && depth-- == 0)
            return at;
    }
    return at;
}

// Joins the texts of an argument; each run of other tokens between them becomes "<>". The conversion of a
// literal to std::string does not count.
static std::string wholeArgument(const std::vector<Token>& tokens, std::size_t start) {
    std::string message;
    bool filled = false;
    for (std::size_t at = start, end = argumentEnd(tokens, start); at < end; ++at) {
        const Token& token = tokens[at];
        if (token.kind == 's')
            message += (filled ? "<>" : "") + token.text;
        if (token.kind == 's' || (token.kind == 'i' && token.text != "std" && token.text != "string"))
            filled = token.kind != 's';
    }
    return message + (filled ? "<>" : "");
}

// The result code returned by the statement after the one that contains a token.
static std::string returnedAfter(const std::vector<Token>& tokens, std::size_t at) {
    while (at < tokens.size() && !isPunctuation(tokens[at], ';'))
        ++at;
    return textAt(tokens, at + 1) == "return" ? resultAt(tokens, at + 2) : "";
}

static std::string nameBefore(const std::vector<Token>& tokens, std::size_t at) {
    std::size_t before = at;
    if (before > 0 && isPunctuation(tokens[before - 1], '='))
        --before; // a braced list assigned to a variable has the variable's name
    return before > 0 && tokens[before - 1].kind == 'i' ? tokens[before - 1].text : "";
}

namespace {
struct Walk {
    std::vector<Place> open = {};
    std::vector<std::size_t> argumentStart = {};
    std::string function = {};
};
} // namespace

static void followBrackets(Walk* walk, const std::vector<Token>& tokens, std::size_t at) {
    const char c = tokens[at].kind == 'p' ? tokens[at].text[0] : ' ';
    if (c == '(' || c == '{') {
        const std::string name = nameBefore(tokens, at);
        if (c == '(' && walk->open.empty())
            walk->function = name;
        // Bodies of functions and namespaces do not count.
        const bool body = c == '{' && at > 0 && isPunctuation(tokens[at - 1], ')');
        walk->open.push_back({body ? ' ' : c, name, 0, "", at + 1});
        walk->argumentStart.push_back(at + 1);
    } else if ((c == ')' || c == '}') && !walk->open.empty()) {
        walk->open.pop_back();
        walk->argumentStart.pop_back();
    } else if (c == ',' && !walk->open.empty()) {
        ++walk->open.back().argument;
        walk->argumentStart.back() = at + 1;
    }
    if (!walk->open.empty() && walk->open.back().result.empty())
        walk->open.back().result = resultAt(tokens, at);
    if (c == '}' && walk->open.empty())
        walk->function.clear();
}

static std::string variableBefore(const std::vector<Token>& tokens, std::size_t at) {
    if (at < 4 || !isPunctuation(tokens[at - 1], '='))
        return "";
    return isPunctuation(tokens[at - 2], ']') ? tokens[at - 4].text : tokens[at - 2].text;
}

std::vector<SourceText> readSourceTexts(const std::string& path, const std::string& name) {
    const std::string source = readWhole(path);
    const std::vector<Token> tokens = lex(source);
    std::vector<SourceText> texts;
    Walk walk;
    for (std::size_t at = 0; at < tokens.size(); ++at) {
        followBrackets(&walk, tokens, at);
        if (tokens[at].kind != 's')
            continue;
        SourceText text = {
            name, tokens[at].line, tokens[at].text, walk.function, variableBefore(tokens, at), {}, {}, "",
            ""};
        const std::size_t depth = walk.open.size();
        std::size_t start = at;
        if (depth > 0 && walk.open[depth - 1].open != ' ') {
            text.inner = walk.open[depth - 1];
            start = walk.argumentStart[depth - 1];
        }
        if (depth > 1)
            text.outer = walk.open[depth - 2];
        text.returned = returnedAfter(tokens, at);
        text.message = wholeArgument(tokens, start);
        texts.push_back(text);
    }
    return texts;
}
