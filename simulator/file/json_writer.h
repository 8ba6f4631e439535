// Writes records as JSON. The reader in json_reader.h has the same members, so that one
// describe(io, record) names each key once for reading and writing.
#pragma once

#include <nlohmann/json.hpp>

#include <span>
#include <string>
#include <utility>

#include "simulator/file/world_json.h"

namespace q5sim {

using Json = nlohmann::ordered_json;

// A word of the file and its code.
struct Word {
    const char* word;
    int code;
};

class Writer {
public:
    Json json = Json::object();

    template <typename Number>
    void number(const char* key, const Number& value, std::int64_t, std::int64_t) {
        json[key] = value;
    }
    // Left out unless there are any.
    void count(const char* key, const std::uint32_t& value, std::int64_t) {
        if (value != 0)
            json[key] = value;
    }
    void flag(const char* key, const bool& value) { json[key] = value; }
    // Left out unless it is set.
    void mark(const char* key, const bool& value) {
        if (value)
            json[key] = value;
    }
    void text(const char* key, const std::string& value, std::size_t) { json[key] = value; }
    void notes(const char* key, const std::vector<std::string>& values, std::size_t, std::size_t) {
        if (!values.empty())
            json[key] = values;
    }
    template <typename Code>
    void word(const char* key, const Code& code, std::span<const Word> words) {
        json[key] = code;
        for (const Word& row : words)
            if (row.code == static_cast<int>(code))
                json[key] = row.word;
    }
    template <typename Record>
    void object(const char* key, const Record& record) {
        Writer inner;
        describe(inner, const_cast<Record&>(record));
        json[key] = std::move(inner.json);
    }
    template <typename Record>
    void optional(const char* key, const bool& present, const Record& record) {
        if (present)
            object(key, record);
        else
            json[key] = nullptr;
    }
    template <typename Record>
    void list(const char* key, const std::vector<Record>& records, std::size_t) {
        json[key] = Json::array();
        for (const Record& record : records) {
            Writer inner;
            describe(inner, const_cast<Record&>(record));
            json[key].push_back(std::move(inner.json));
        }
    }
    template <typename Number>
    void numbers(const char* key, const std::vector<Number>& values, std::int64_t, std::size_t) {
        json[key] = values;
    }
    void version(const char* key, const Version& version) { json[key] = version.part; }
};

} // namespace q5sim
