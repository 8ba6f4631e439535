// The world as JSON text with a fixed order of keys, meant to be read and edited by hand.
#pragma once

#include <string>

#include "simulator/world/world_check.h"

namespace q5sim {

// Why a text is not a valid world.
struct ValidationError {
    int line = 0; // from 1
    std::string reason;
};

// The largest world file that is read, in bytes.
inline constexpr std::size_t kMaxWorldSize = 16 * 1024 * 1024;

std::string worldToJson(const World& world);

// Reads and checks a whole world. Returns false, with world unchanged and error filled, when the text
// is not JSON, has an unknown key or an invalid value, or contradicts itself.
bool worldFromJson(const std::string& text, World& world, ValidationError& error);

// The line, from 1, of the value at path in a valid JSON text. When the path does not exist: the line
// of its last step that does.
int lineForPath(const std::string& text, const FieldPath& path);

// The offset of the first object or list inside limit others; npos: there is none. The text may be any.
std::size_t findDeepNesting(const std::string& text, int limit);

// The offset at which a text may have more than limit values; npos: there is none. An empty object or list
// counts twice. The text may be any.
std::size_t findExcessValue(const std::string& text, std::size_t limit);

// The offset of the first duplicate key of an object in a valid JSON text; npos: there is none.
std::size_t findDuplicateKey(const std::string& text);

// The line, from 1, of an offset in a text.
int lineOfByte(const std::string& text, std::size_t offset);

} // namespace q5sim
