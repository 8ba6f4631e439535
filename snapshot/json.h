// A snapshot as JSON, and back. Keys are named like the fields of the adapters' records; reserved bytes
// and reply headers are left out. A code is followed by its word, in a key that ends in "Text". A text that
// is not UTF-8 is followed by all its bytes in hexadecimal, in a key that ends in "Bytes".
#pragma once

#include <nlohmann/json.hpp>

#include "snapshot/snapshot.h"

using Json = nlohmann::ordered_json;

inline constexpr int kJsonFormat = 1;

// The keys "controllerCount", "faults" and "controllers".
Json snapshotToJson(const Snapshot& snapshot);

// The file of an earlier run is untrusted: it is rejected if a snapshot cannot hold all of it. Returns an
// error message, empty on success. Words and members are derived again.
std::string snapshotFromJson(const Json& json, Snapshot* snapshot);

// Parses and checks the text of such a file, "format" included. Returns an error message, empty on success.
std::string snapshotFromText(const std::string& text, Snapshot* snapshot);

// Adds a text of the adapters to an object: key, and keyBytes if it is not UTF-8.
void addText(Json* object, const std::string& key, std::string_view text);

// The bytes of a text that addText() has stored; nullopt if there is none, or it is malformed.
std::optional<std::string> textFrom(const Json& object, const std::string& key);
