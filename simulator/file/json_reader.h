// Reads records from JSON and checks each value; the counterpart of json_writer.h.
#pragma once

#include <algorithm>
#include <limits>

#include "simulator/file/json_writer.h"

namespace q5sim {

// Unlike the writer's type, it looks up keys in logarithmic time, however many a malformed file has.
using ParsedJson = nlohmann::json;

// Reads one object. A missing key leaves its field unchanged, unless it is required.
// rejectUnknownKeys() throws for keys that were never looked up, which catches misspelled ones.
class Reader {
public:
    Reader(const ParsedJson& object, FieldPath where) : json(object), path(std::move(where)) {
        if (!json.is_object())
            throw WorldError{path, "an object in braces is expected"};
    }

    void require(const char* key) const {
        if (!json.contains(key))
            throw WorldError{path, std::string("the key \"") + key + "\" is missing"};
    }

    template <typename Number>
    void number(const char* key, Number& value, std::int64_t low, std::int64_t high) {
        if (const ParsedJson* found = find(key))
            value = static_cast<Number>(wholeNumber(*found, at(key), low, high));
    }
    void count(const char* key, std::uint32_t& value, std::int64_t high) { number(key, value, 0, high); }
    void flag(const char* key, bool& value) {
        const ParsedJson* found = find(key);
        if (found != nullptr && !found->is_boolean())
            throw WorldError{at(key), "true or false is expected"};
        value = found != nullptr ? found->get<bool>() : value;
    }
    void mark(const char* key, bool& value) { flag(key, value); }
    void text(const char* key, std::string& value, std::size_t maxLength) {
        if (const ParsedJson* found = find(key))
            value = plainText(*found, at(key), maxLength);
    }
    void notes(const char* key, std::vector<std::string>& values, std::size_t maxCount,
               std::size_t maxLength) {
        const ParsedJson* found = findList(key, maxCount);
        for (std::size_t i = 0; found != nullptr && i < found->size(); i++)
            values.push_back(plainText((*found)[i], at(key, i), maxLength));
    }
    template <typename Code>
    void word(const char* key, Code& code, std::span<const Word> words) {
        if (const ParsedJson* found = find(key))
            code = static_cast<Code>(wordCode(*found, at(key), words));
    }
    template <typename Record>
    void object(const char* key, Record& record) {
        if (const ParsedJson* found = find(key))
            readRecord(*found, at(key), record);
    }
    template <typename Record>
    void optional(const char* key, bool& present, Record& record) {
        const ParsedJson* found = find(key);
        present = found != nullptr && !found->is_null();
        if (present)
            readRecord(*found, at(key), record);
    }
    template <typename Record>
    void list(const char* key, std::vector<Record>& records, std::size_t maxCount) {
        const ParsedJson* found = findList(key, maxCount);
        for (std::size_t i = 0; found != nullptr && i < found->size(); i++) {
            records.emplace_back();
            readRecord((*found)[i], at(key, i), records.back());
        }
    }
    template <typename Number>
    void numbers(const char* key, std::vector<Number>& values, std::int64_t high, std::size_t maxCount) {
        const ParsedJson* found = findList(key, maxCount);
        for (std::size_t i = 0; found != nullptr && i < found->size(); i++)
            values.push_back(static_cast<Number>(wholeNumber((*found)[i], at(key, i), 0, high)));
    }
    void version(const char* key, Version& version) {
        const ParsedJson* found = findList(key, std::size(version.part));
        if (found != nullptr && found->size() != std::size(version.part))
            throw WorldError{at(key), "four numbers are expected"};
        for (std::size_t i = 0; found != nullptr && i < found->size(); i++)
            version.part[i] = static_cast<std::int32_t>(wholeNumber((*found)[i], at(key, i), 0, 99999));
    }
    void rejectUnknownKeys() const {
        for (const auto& item : json.items())
            if (std::find(seenKeys.begin(), seenKeys.end(), item.key()) == seenKeys.end())
                throw WorldError{at(item.key()), "the key \"" + item.key() + "\" has no meaning here"};
    }

    template <typename Record>
    static void readRecord(const ParsedJson& json, FieldPath path, Record& record) {
        Reader inner(json, std::move(path));
        describe(inner, record);
        inner.rejectUnknownKeys();
    }

private:
    const ParsedJson& json;
    FieldPath path;
    std::vector<std::string> seenKeys;

    FieldPath at(const std::string& key) const {
        FieldPath inner = path;
        inner.push_back(key);
        return inner;
    }
    FieldPath at(const std::string& key, std::size_t position) const {
        FieldPath inner = at(key);
        inner.push_back(std::to_string(position));
        return inner;
    }
    const ParsedJson* find(const char* key) {
        seenKeys.emplace_back(key);
        const auto found = json.find(key);
        return found == json.end() ? nullptr : &*found;
    }
    const ParsedJson* findList(const char* key, std::size_t maxCount) {
        const ParsedJson* found = find(key);
        if (found != nullptr && (!found->is_array() || found->size() > maxCount))
            throw WorldError{at(key), "a list of at most " + std::to_string(maxCount) + " is expected"};
        return found;
    }
    static std::string plainText(const ParsedJson& json, const FieldPath& path, std::size_t maxLength) {
        if (!json.is_string() || json.get_ref<const std::string&>().size() > maxLength)
            throw WorldError{path, "a text of at most " + std::to_string(maxLength) + " bytes is expected"};
        std::string value = json.get<std::string>();
        if (value.find('\0') != std::string::npos)
            throw WorldError{path, "a text without NUL is expected"};
        return value;
    }
    static std::int64_t wholeNumber(const ParsedJson& json, const FieldPath& path, std::int64_t low,
                                    std::int64_t high) {
        bool good = json.is_number_integer();
        if (good && json.is_number_unsigned())
            good = json.get<std::uint64_t>() <= std::uint64_t{std::numeric_limits<std::int64_t>::max()};
        const std::int64_t value = good ? json.get<std::int64_t>() : 0;
        if (!good || value < low || value > high)
            throw WorldError{path, "a whole number from " + std::to_string(low) + " to " +
                                       std::to_string(high) + " is expected"};
        return value;
    }
    static int wordCode(const ParsedJson& json, const FieldPath& path, std::span<const Word> words) {
        std::string choices;
        for (const Word& row : words) {
            if (json.is_string() && json.get_ref<const std::string&>() == row.word)
                return row.code;
            choices += (choices.empty() ? "\"" : ", \"") + std::string(row.word) + "\"";
        }
        if (json.is_number_unsigned() && json.get<std::uint64_t>() <= 255)
            return json.get<int>();
        throw WorldError{path, "one of " + choices + " is expected"};
    }
};

} // namespace q5sim
