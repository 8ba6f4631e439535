// Temporary configuration files of the tests. Their contents are in config_blocks.h.
#pragma once

#include <unistd.h>

#include "tests/mock_adapter.h"
#include "tests/temp_dir.h"

// A test without planned calls and with a temporary directory.
class Configuration : public MockAdapterTest {
protected:
    void write(const std::string& text) const { temporary.write("all.cfg", text); }
    std::string contents() const { return temporary.read("all.cfg"); }
    bool exists() const { return access(path.c_str(), F_OK) == 0; }

    const TempDir temporary;
    const std::string directory = temporary.path();
    const std::string path = temporary.path("all.cfg");
};

// Reads a block from the text after a marker into a record filled with a pattern. Stores what the reader
// prints in *messages, which may be null.
template <typename Record>
Record readBack(int (*reader)(std::FILE*, Record*), const std::string& text,
                std::string* messages = nullptr) {
    std::FILE* file = std::tmpfile();
    std::fwrite(text.data(), 1, text.size(), file);
    std::rewind(file);
    Record record;
    std::memset(&record, 0xA5, sizeof record);
    int result = -1;
    const std::string output = outputOf([&] { result = reader(file, &record); });
    EXPECT_EQ(result, 0);
    if (messages != nullptr)
        *messages = output;
    else
        EXPECT_EQ(output, "");
    std::fclose(file);
    return record;
}

template <std::size_t Size>
void put(char (&field)[Size], const std::string& text) {
    std::memcpy(field, text.c_str(), text.size() < Size ? text.size() + 1 : Size);
}

// The text with the first occurrence of from replaced by to.
inline std::string with(std::string text, const std::string& from, const std::string& to) {
    const std::size_t place = text.find(from);
    EXPECT_NE(place, std::string::npos) << from;
    return place == std::string::npos ? text : text.replace(place, from.size(), to);
}

inline const std::string kFrameLine = std::string(59, '-') + "\n";
