// The one reader of options, and the rows it is given.
#include "commands/options.h"

#include "util/utils.h"
#include "util/words.h"

Option flagOption(const char* letter, bool* given) {
    return {.letter = letter, .kind = Option::flag, .given = given};
}

Option numberOption(const char* letter, const char* noun, std::uint32_t* value, Result::Code refused,
                    bool* given) {
    return {.letter = letter,
            .kind = Option::number,
            .noun = noun,
            .value = value,
            .given = given,
            .refused = refused};
}

Option atoiOption(const char* letter, std::uint32_t* value) {
    return {.letter = letter, .kind = Option::atoiNumber, .value = value};
}

Option driveOption(const char* letter, const char* noun, std::uint32_t* value, std::uint32_t* single) {
    return {.letter = letter,
            .kind = Option::number,
            .noun = noun,
            .value = value,
            .single = single,
            .typedFrom = 1,
            .refused = Result::badId};
}

Option countOption(const char* letter, const char* noun, std::uint32_t* value, std::uint32_t most) {
    return {.letter = letter,
            .kind = Option::count,
            .noun = noun,
            .value = value,
            .most = most,
            .refused = Result::badValue};
}

Option listOption(const char* letter, std::uint32_t* numbers, int* count, int room, std::uint32_t typedFrom) {
    return {.letter = letter,
            .kind = Option::idList,
            .value = numbers,
            .listed = count,
            .room = room,
            .typedFrom = typedFrom};
}

Option textOption(const char* letter, const char** word) {
    return {.letter = letter, .kind = Option::text, .word = word};
}

Option ignoredOption(const char* letter) {
    return {.letter = letter, .kind = Option::skipped};
}

int firstOption(int wordCount, char** words) {
    return wordCount > 1 && strCmpNoCase(words[1], "-a") == 0 ? 3 : 1;
}

static const Option* findOption(std::span<const Option> options, const char* word) {
    for (const Option& option : options)
        if (strCmpNoCase(word, option.letter) == 0)
            return &option;
    return nullptr;
}

// A list given twice is the second alone: nothing of the first stays behind its end.
static void readList(const Option& option, const char* word) {
    TranslateIDListUpTo(option.room, option.listed, option.value, word);
    for (int i = 0; i < option.room; ++i)
        option.value[i] = i < *option.listed ? option.value[i] - option.typedFrom : 0;
}

static int readNumber(const Option& option, const char* word) {
    std::uint32_t value = 0;
    if (!TranslateStr2Int(option.noun, word, &value))
        return option.refused;
    if (option.kind == Option::number)
        *option.value = value - option.typedFrom;
    else if (value >= 1 && value <= option.most)
        *option.value = value;
    return Result::done;
}

static int readValue(const Option& option, const char* word) {
    switch (option.kind) {
    case Option::number:
    case Option::count:
        return readNumber(option, word);
    case Option::atoiNumber:
        *option.value = static_cast<std::uint32_t>(atoiText(word));
        break;
    case Option::idList:
        readList(option, word);
        break;
    case Option::text:
        *option.word = word;
        break;
    case Option::flag:
    case Option::skipped:
        break;
    }
    return Result::done;
}

int readOption(char** words, int* index, std::span<const Option> options) {
    const Option* option = findOption(options, wordAt(words, *index));
    if (option == nullptr)
        return kUnknownOption;
    ++*index;
    if (option->kind != Option::flag)
        if (const int result = readValue(*option, wordAt(words, (*index)++)))
            return result;
    if (option->given != nullptr)
        *option->given = true;
    if (option->single != nullptr)
        *option->single = 1;
    return Result::done;
}

int readOptions(int wordCount, char** words, int first, std::span<const Option> options,
                const char* errorMessage, int* stoppedAt) {
    int index = first;
    while (index < wordCount) {
        const int result = readOption(words, &index, options);
        if (result == kUnknownOption)
            return fail(Result::badValue, errorMessage);
        if (result != Result::done)
            return result;
    }
    if (stoppedAt != nullptr)
        *stoppedAt = index;
    return Result::done;
}
