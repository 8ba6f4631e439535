// Whole files: reading, and replacing in one step.
#pragma once

#include <string>

enum class ReadResult { done, missing, failed };
ReadResult readFile(const std::string& path, std::string* text);

// Writes the text under a temporary name in the same directory and renames it, so that a reader sees
// either the old file or the new one, whole. Returns what went wrong, or nothing.
std::string replaceFile(const std::string& path, const std::string& text);
