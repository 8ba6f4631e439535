// Settings texts: comma-separated key=value items as given with -s and -z, and what several commands
// find in them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "util/result.h"
#include "util/words.h"

// A working copy of a settings text, as long as any word; a longer text is cut.
struct SettingsText {
    char text[kWordSize];
};
void copySettings(SettingsText* settings, const char* word);

// Cuts off the item at *rest, up to the next comma, and moves *rest behind it. Every comma separates,
// so items may be empty; null when there are no more. *rest starts at the text and is null at the end.
char* nextItem(char** rest);

// How an item fares.
enum class ItemResult {
    ok,
    invalid, // the text is refused once all of it is read
    abort,   // the command ends at once; the reason has been printed
};

// Applies every item of the text to target. A bad one does not keep the others from being looked at,
// but badMessage is printed in the end. Result::done, or Result::badValue after a message.
template <typename Target>
int applyItems(const char* word, Target* target, ItemResult (*apply)(Target* target, const char* item),
               const char* badMessage) {
    SettingsText settings;
    copySettings(&settings, word);
    bool good = true;
    for (char *rest = settings.text, *item; (item = nextItem(&rest)) != nullptr;) {
        const ItemResult result = apply(target, item);
        if (result == ItemResult::abort)
            return Result::badValue;
        if (result == ItemResult::invalid)
            good = false;
    }
    return good ? Result::done : fail(Result::badValue, badMessage);
}

// Says why the command ends here.
ItemResult abortItems(const char* message);

// What follows the first "=" of an item; null when it has none.
const char* itemValue(const char* item);

// Whether a key or a value word stands anywhere in the item, without regard to case.
bool itemContains(const char* item, const char* word);

// Whether the key of an item, the part before "=", says the word. Here case counts.
bool keyContains(const char* item, const char* word);

// Stores 1 for an item that says "enable" and 0 for any other, which is bad unless it says "disable".
ItemResult readSwitch(const char* item, std::uint8_t* field);

// Stores a name without the blanks around it, of which 127 characters are looked at, cut to the field.
// The rest of the field is zero.
void readName(const char* value, char* field, std::size_t size);
