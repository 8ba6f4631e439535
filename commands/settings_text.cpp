// Splits settings texts into items and parses their values.
#include "commands/settings_text.h"

#include <cstdio>
#include <cstring>

#include "util/utils.h"

void copySettings(SettingsText* settings, const char* word) {
    std::snprintf(settings->text, sizeof settings->text, "%s", word);
}

char* nextItem(char** rest) {
    char* item = *rest;
    if (item == nullptr)
        return nullptr;
    char* comma = std::strchr(item, ',');
    if (comma != nullptr)
        *comma = '\0';
    *rest = comma != nullptr ? comma + 1 : nullptr;
    return item;
}

ItemResult abortItems(const char* message) {
    std::puts(message);
    return ItemResult::abort;
}

const char* itemValue(const char* item) {
    const char* equals = std::strchr(item, '=');
    return equals != nullptr ? equals + 1 : nullptr;
}

bool itemContains(const char* item, const char* word) {
    return strstrNoCase(item, word) != nullptr;
}

bool keyContains(const char* item, const char* word) {
    const char* found = std::strstr(item, word);
    return found != nullptr && found + std::strlen(word) <= item + std::strcspn(item, "=");
}

ItemResult parseSwitch(const char* item, std::uint8_t* field) {
    *field = itemContains(item, "enable");
    return *field != 0 || itemContains(item, "disable") ? ItemResult::ok : ItemResult::invalid;
}

void parseName(const char* value, char* field, std::size_t size) {
    while (*value == ' ')
        ++value;
    std::size_t length = strnlen(value, 127);
    while (length > 0 && value[length - 1] == ' ')
        --length;
    std::memset(field, 0, size);
    std::memcpy(field, value, length < size ? length : size - 1);
}
