// The buzz command: shows the state of the controllers' buzzers and turns them on and off.
#include "commands/buzz.h"

#include <cstdio>

#include "adapter/battery.h"
#include "commands/options.h"
#include "util/utils.h"

static constexpr std::uint32_t kBuzzersListed = 4; // Compatibility: regardless of how many controllers exist

static const char* buzzerText(std::uint32_t controller) {
    std::uint8_t state = 0;
    if (q5_getBuzzerStatus(hbaAddress(controller), 0, &state, sizeof state) != 0)
        return "Unknown";
    return state != 0 ? "enabled" : "disabled";
}

int ListBuzzStatus(int wordCount, char** words) {
    std::uint32_t first = 0, count = kBuzzersListed;
    const Option options[] = {
        numberOption("-i", "controller ID", &first, Result::badId),
        countOption("-c", "controller count", &count, kBuzzersListed - 1),
    };
    if (const int result = readOptions(wordCount, words, firstOption(wordCount, words), options,
                                       "Invalid subcommand for \"buzz\"!"))
        return result;

    std::printf("%6s %9s\n", "CtrlId", "Status");
    for (std::uint32_t i = 0; i < count; ++i)
        std::printf("%6d %9s\n", static_cast<int>(first + i), buzzerText(first + i));
    return Result::done;
}

int SetBuzzSettings(int wordCount, char** words) {
    if (wordCount <= 2)
        return fail(Result::badCount, "Invalid numbers of parameter for command \"buzz\"");
    const bool enable = strCmpNoCase(words[2], "enable") == 0;
    if (!enable && strCmpNoCase(words[2], "disable") != 0)
        return fail(Result::badValue, "Invalid subcommand for \"buzz\"");
    std::uint32_t controller = 0;
    if (wordCount == 5 && strCmpNoCase(words[3], "-i") == 0 &&
        !TranslateStr2Int("controller ID", words[4], &controller))
        return Result::badId;

    if (enable)
        q5_turnOnBuzzer(hbaAddress(controller), 0, 0);
    else
        q5_turnOffBuzzer(hbaAddress(controller), 0, 0);
    return Result::done;
}
