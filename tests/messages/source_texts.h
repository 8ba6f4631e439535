// The string literals of a C++ source, each with the place where it is used.
#pragma once

#include <string>
#include <vector>

// A call or a braced list that contains a literal.
struct Place {
    char open = '\0';      // '(' or '{'
    std::string name;      // of the function or variable; empty for a list inside another
    int argument = 0;      // position of the literal's argument, from 0
    std::string result;    // X of the first "Result::X" in it so far; empty if there is none
    std::size_t start = 0; // index of the first token inside
};

struct SourceText {
    std::string file;
    int line = 0;
    std::string text;     // unescaped, adjacent literals joined
    std::string function; // that contains it
    std::string variable; // that it initializes directly; empty for most
    Place inner, outer;   // the innermost place and the one around it
    std::string returned; // X if the statement after this one is "return Result::X;"
    std::string message;  // the whole argument; parts that are not literal are shown as <>
};

// Reads the texts of one file, which error messages call by name.
std::vector<SourceText> readSourceTexts(const std::string& path, const std::string& name);

// The whole file; prints a message and exits if it cannot be read.
std::string readWhole(const std::string& path);
