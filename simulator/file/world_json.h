// The world as a JSON text: readable, in a fixed order of keys, made to be edited by hand.
#pragma once

#include <string>

#include "simulator/world/world.h"

namespace q5sim {

// What is wrong with a text that should describe a world.
struct ValidationError {
    int line = 0; // from 1
    std::string reason;
};

std::string worldToJson(const World& world);

// Reads and checks a whole world. Returns false, with world untouched and fault told, when the text
// is not JSON, has a key or value that means nothing here, or describes a world that cannot be.
bool worldFromJson(const std::string& text, World& world, ValidationError& fault);

// A place in a JSON text: object keys, and list positions as decimal digits.
using JsonPath = std::vector<std::string>;

// Thrown while a world is read or checked, never out of worldFromJson.
struct WorldError {
    JsonPath path;
    std::string reason;
};

// Throws a WorldError when the parts of a world do not agree with each other.
void checkWorld(const World& world);

// The line, from 1, on which the value at path stands in a valid JSON text; of a path that leads
// nowhere, the line of the last step that exists.
int lineForPath(const std::string& text, const JsonPath& path);

// Where, in a valid JSON text, an object has a key for the second time; npos: nowhere.
std::size_t findDuplicateKey(const std::string& text);

// The line, from 1, of a place in a text.
int lineOfByte(const std::string& text, std::size_t offset);

} // namespace q5sim
