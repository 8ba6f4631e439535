// The string literals of a C++ source, each with the place it is used in.
#pragma once

#include <string>
#include <vector>

// A call or a braced list that a literal stands in.
struct Place {
    char open = '\0';      // '(' or '{'
    std::string name;      // what is called or filled; empty for a list inside another
    int argument = 0;      // position of the literal's argument, from 0
    std::string result;    // X of the first "Result::X" in it so far; empty when there is none
    std::size_t start = 0; // index of the first token inside
};

struct SourceText {
    std::string file;
    int line = 0;
    std::string text;     // unescaped, adjacent literals joined
    std::string function; // that it stands in
    std::string variable; // that it initialises directly; empty for most
    Place inner, outer;   // the innermost place and the one around it
    std::string returned; // X when the statement after this one is "return Result::X;"
    std::string message;  // the whole argument; what is not literal in it is shown as <>
};

// Reads the texts of one file; name is what messages about it say.
std::vector<SourceText> readSourceTexts(const std::string& path, const std::string& name);

// The whole file; ends the program with a message when it cannot be read.
std::string readWhole(const std::string& path);
