// The battery command: shows the temperature, voltage and state of a controller's battery.
#include "commands/battery.h"

#include <cstdint>
#include <cstdio>

#include "adapter/battery.h"
#include "util/result.h"
#include "util/utils.h"
#include "util/words.h"

static void printTemperature(std::uint16_t tenthsOfKelvin) {
    if (tenthsOfKelvin >= 2831 && tenthsOfKelvin <= 3331)
        std::printf("  Battery Temperature - %2f C\n", static_cast<float>(tenthsOfKelvin - 2731) / 10.0F);
    else
        std::puts("  Battery Temperature out of range.");
}

static void printVoltage(std::uint16_t millivolts) {
    if (millivolts == kNoVoltage)
        std::puts("  Can not get Voltage.");
    else
        std::printf("  Battery Voltage - %2f V\n", static_cast<float>(millivolts) / 1000.0F);
}

static void printState(std::uint8_t status) {
    switch (status & 0x7F) {
    case kBatteryCharging:
        std::puts("  Battery Status - Charging");
        break;
    case kBatteryDischarging:
        std::puts("  Battery Status - Discharging");
        break;
    case kBatteryFull:
        std::puts("  Battery Status - Fully charged");
        break;
    case kBatteryFailed:
        std::puts("  Battery Status - Not functioning");
        break;
    case kBatteryReconditioning:
        std::puts("  Battery Status - Reconditioning");
        break;
    default:
        break;
    }
}

int ListBatteryInfo(int wordCount, char** words) {
    std::uint32_t controller = 0;
    // Compatibility: "-i" is rejected, while any other word is followed by a controller ID.
    for (int i = 1; i < wordCount; i += 2) {
        if (strCmpNoCase(words[i], "-i") == 0)
            return fail(Result::badValue, "Invalid subcommand - 'battery'");
        if (!TranslateStr2Int("controller ID", wordAt(words, i + 1), &controller))
            return Result::badId;
    }

    const BatteryQuery query = {};
    BatteryInfo info = {};
    q5_getBatteryInfo(hbaAddress(controller), 0, &query, &info, sizeof info);
    if (info.status == 0) {
        std::printf("No battery exists in controller with ID %d!\n", static_cast<int>(controller));
        return Result::notFound;
    }
    std::printf("Battery Information of controller with ID %d:\n", static_cast<int>(controller));
    printTemperature(info.temperature);
    printVoltage(info.voltage);
    printState(info.status);
    std::puts("");
    return Result::done;
}
