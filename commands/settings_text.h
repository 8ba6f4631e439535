// Settings texts: the comma-separated key=value items of -s and -z, and parsing the values that several
// commands share.
#pragma once

#include <cstddef>
#include <cstdint>

#include "util/result.h"
#include "util/words.h"

// A modifiable copy of a settings text. It holds any word; a longer text is truncated.
struct SettingsText {
    char text[kWordSize];
};
void copySettings(SettingsText* settings, const char* word);

// Returns the item at *rest, terminated at the next comma, and moves *rest past that comma. Items may be
// empty. Null at the end. *rest starts at the text and becomes null after the last item.
char* nextItem(char** rest);

// The result of applying an item.
enum class ItemResult {
    ok,
    invalid, // the text is rejected after all items have been applied
    abort,   // the command ends immediately; the reason has been printed
};

// Applies every item of the text to target. After an invalid item the others are still applied, and
// errorMessage is printed at the end. Returns Result::done, or Result::badValue after a message.
template <typename Target>
int applyItems(const char* word, Target* target, ItemResult (*apply)(Target* target, const char* item),
               const char* errorMessage) {
    SettingsText settings;
    copySettings(&settings, word);
    bool valid = true;
    for (char *rest = settings.text, *item; (item = nextItem(&rest)) != nullptr;) {
        const ItemResult result = apply(target, item);
        if (result == ItemResult::abort)
            return Result::badValue;
        if (result == ItemResult::invalid)
            valid = false;
    }
    return valid ? Result::done : fail(Result::badValue, errorMessage);
}

// Prints the message and returns ItemResult::abort.
ItemResult abortItems(const char* message);

// The text after the first "=" of an item; null if there is none.
const char* itemValue(const char* item);

// Whether the word occurs anywhere in the item, ignoring case.
bool itemContains(const char* item, const char* word);

// Whether the word occurs in the key of the item, the part before "=". Case-sensitive.
bool keyContains(const char* item, const char* word);

// Stores 1 if the item contains "enable", else 0. Invalid if it contains neither "enable" nor
// "disable".
ItemResult parseSwitch(const char* item, std::uint8_t* field);

// Stores a name without its surrounding blanks, truncated to the field. Only the first 127 characters
// are considered. The rest of the field is cleared.
void parseName(const char* value, char* field, std::size_t size);
