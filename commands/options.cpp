// The option parser shared by all commands, and the constructors of its table rows.
#include "commands/options.h"

#include "util/utils.h"
#include "util/words.h"

Option flagOption(const char* name, bool* present) {
    return {.name = name, .kind = Option::Kind::flag, .present = present};
}

Option numberOption(const char* name, const char* valueName, std::uint32_t* value, Result::Code errorCode,
                    bool* present) {
    return {.name = name,
            .kind = Option::Kind::number,
            .valueName = valueName,
            .value = value,
            .present = present,
            .errorCode = errorCode};
}

Option atoiOption(const char* name, std::uint32_t* value) {
    return {.name = name, .kind = Option::Kind::atoiNumber, .value = value};
}

Option driveOption(const char* name, const char* valueName, std::uint32_t* value,
                   std::uint32_t* impliedCount) {
    return {.name = name,
            .kind = Option::Kind::number,
            .valueName = valueName,
            .value = value,
            .impliedCount = impliedCount,
            .base = 1,
            .errorCode = Result::badId};
}

Option countOption(const char* name, const char* valueName, std::uint32_t* value, std::uint32_t max) {
    return {.name = name,
            .kind = Option::Kind::boundedNumber,
            .valueName = valueName,
            .value = value,
            .max = max,
            .errorCode = Result::badValue};
}

Option listOption(const char* name, std::uint32_t* numbers, int* count, int capacity, std::uint32_t base) {
    return {.name = name,
            .kind = Option::Kind::idList,
            .value = numbers,
            .count = count,
            .capacity = capacity,
            .base = base};
}

Option textOption(const char* name, const char** text) {
    return {.name = name, .kind = Option::Kind::text, .text = text};
}

Option ignoredOption(const char* name) {
    return {.name = name, .kind = Option::Kind::ignored};
}

int firstOption(int wordCount, char** words) {
    return wordCount > 1 && strCmpNoCase(words[1], "-a") == 0 ? 3 : 1;
}

static const Option* findOption(std::span<const Option> options, const char* word) {
    for (const Option& option : options)
        if (strCmpNoCase(word, option.name) == 0)
            return &option;
    return nullptr;
}

// Clears the entries past the end, so that none of the previous list remains when the option is repeated.
static void parseList(const Option& option, const char* word) {
    TranslateIDListUpTo(option.capacity, option.count, option.value, word);
    for (int i = 0; i < option.capacity; ++i)
        option.value[i] = i < *option.count ? option.value[i] - option.base : 0;
}

static int parseNumber(const Option& option, const char* word) {
    std::uint32_t value = 0;
    if (!TranslateStr2Int(option.valueName, word, &value))
        return option.errorCode;
    if (option.kind == Option::Kind::number)
        *option.value = value - option.base;
    else if (value >= 1 && value <= option.max)
        *option.value = value;
    return Result::done;
}

static int parseValue(const Option& option, const char* word) {
    switch (option.kind) {
    case Option::Kind::number:
    case Option::Kind::boundedNumber:
        return parseNumber(option, word);
    case Option::Kind::atoiNumber:
        *option.value = static_cast<std::uint32_t>(atoiText(word));
        break;
    case Option::Kind::idList:
        parseList(option, word);
        break;
    case Option::Kind::text:
        *option.text = word;
        break;
    case Option::Kind::flag:
    case Option::Kind::ignored:
        break;
    }
    return Result::done;
}

int readOption(char** words, int* index, std::span<const Option> options) {
    const Option* option = findOption(options, wordAt(words, *index));
    if (option == nullptr)
        return kUnknownOption;
    ++*index;
    if (option->kind != Option::Kind::flag)
        if (const int result = parseValue(*option, wordAt(words, (*index)++)))
            return result;
    if (option->present != nullptr)
        *option->present = true;
    if (option->impliedCount != nullptr)
        *option->impliedCount = 1;
    return Result::done;
}

int readOptions(int wordCount, char** words, int first, std::span<const Option> options,
                const char* errorMessage, int* endIndex) {
    int index = first;
    while (index < wordCount) {
        const int result = readOption(words, &index, options);
        if (result == kUnknownOption)
            return fail(Result::badValue, errorMessage);
        if (result != Result::done)
            return result;
    }
    if (endIndex != nullptr)
        *endIndex = index;
    return Result::done;
}
