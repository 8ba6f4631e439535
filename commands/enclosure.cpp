// The enclosure command: shows an enclosure's sensors and makes its drives blink.
#include "commands/enclosure.h"

#include <cstdio>

#include "adapter/enclosure.h"
#include "adapter/phydrv.h"
#include "adapter/reply.h"
#include "commands/change_lock.h"
#include "commands/options.h"

static std::uint8_t readEnclosureType(std::uint32_t controller, std::uint32_t enclosure) {
    const EnclosureQuery query = {static_cast<std::uint16_t>(enclosure), 1};
    Reply<EnclosureEntry, kMaxEnclosures> reply = {};
    q5_getEnclosureInfo(hbaAddress(controller), 0, &query, &reply, sizeof reply);
    return reply.record[0].type;
}

static double volts(std::uint32_t millivolts) {
    return static_cast<float>(millivolts) / 1000.0F;
}

// Compatibility: the first sensor of a kind is #1 and every later one #2.
static int sensorNumber(bool* seen) {
    const int number = *seen ? 2 : 1;
    *seen = true;
    return number;
}

static void printNumbered(const EnclosureSensor& sensor, bool* fanSeen, bool* temperatureSeen) {
    const int reading = static_cast<int>(sensor.reading);
    if (sensor.type == kFanSensor)
        std::printf("Fan speed #%d : %d \n", sensorNumber(fanSeen), reading);
    else
        std::printf("Temperature #%d : %d C\n", sensorNumber(temperatureSeen), reading);
}

static void printUnnumbered(const EnclosureSensor& sensor) {
    const int reading = static_cast<int>(sensor.reading);
    if (sensor.type == kFanSensor)
        std::printf("Fan speed : %d \n", reading);
    else
        std::printf("Temperature : %d C\n", reading);
}

static void printSensors(const EnclosureStatus& status, bool numbered) {
    bool fanSeen = false, temperatureSeen = false;
    for (const EnclosureSensor& sensor : status.sensor) {
        if (sensor.type == kRail5VSensor)
            std::printf("5 Voltage : %.2f V\n", volts(sensor.reading));
        else if (sensor.type == kRail12VSensor)
            std::printf("12 Voltage : %.2f V\n", volts(sensor.reading));
        else if (sensor.type != kFanSensor && sensor.type != kTemperatureSensor)
            continue;
        else if (numbered)
            printNumbered(sensor, &fanSeen, &temperatureSeen);
        else
            printUnnumbered(sensor);
    }
}

int ListEnclosureInfo(int wordCount, char** words) {
    std::uint32_t controller = 0, enclosure = 0;
    const Option options[] = {
        numberOption("-e", "enclosure ID", &enclosure, Result::badId),
        numberOption("-i", "controller ID", &controller, Result::badId),
    };
    if (const int result = readOptions(wordCount, words, firstOption(wordCount, words), options,
                                       "Invalid command for \"enclosure\""))
        return result;

    const std::uint8_t type = readEnclosureType(controller, enclosure);
    if (type == kNoEnclosure) {
        std::printf("no enclosure with ID %d in controller #%d is present!\n", static_cast<int>(enclosure),
                    static_cast<int>(controller));
        return Result::done;
    }
    const EnclosureQuery query = {static_cast<std::uint16_t>(enclosure), 1};
    EnclosureStatus status = {};
    q5_getEnclosureStatus(hbaAddress(controller), 0, &query, &status, sizeof status);
    if (type == kTraybox400) {
        std::puts("Enclosure type : Traybox 400");
        printSensors(status, true);
    } else if (type == kTraybox100) {
        std::puts("Enclosure type : Traybox 100");
        printSensors(status, false);
    }
    return Result::done;
}

namespace {
// Compatibility: the locate action reads the entries of the reply at an offset 192 bytes too high, so it
// compares bytes other than a drive's IDs. The size of the reply is fixed by the adapter.
struct LocateEntry {
    std::uint8_t reserved0[4];
    std::uint16_t driveId;
    std::uint8_t reserved6[8];
    std::uint16_t enclosureId;
    std::uint8_t reserved16[648];
};
ASSERT_SIZE(LocateEntry, sizeof(PhyDrvInfo));
ASSERT_OFFSET(LocateEntry, enclosureId, 14);

struct LocateReply {
    ReplyHeader header;
    std::uint8_t reserved64[192];
    LocateEntry entry[64];
};
ASSERT_SIZE(LocateReply, 42752);
ASSERT_OFFSET(LocateReply, entry, 256);
} // namespace

// Compatibility: compares once per entry in the reply, but advances only after a match.
static void locateDrives(HbaAddress address, const LocateReply& reply, std::uint32_t enclosure,
                         std::uint32_t seconds) {
    const LocateEntry* entry = reply.entry;
    for (std::size_t remaining = countRecords(reply.header, sizeof(PhyDrvInfo), std::size(reply.entry));
         remaining > 0; --remaining) {
        if (entry->enclosureId != enclosure)
            continue;
        if (seconds > 0)
            q5_locatePhyDrv(address, 0, entry->driveId, seconds);
        else
            q5_stopLocatePhyDrv(address, 0, entry->driveId);
        ++entry;
    }
}

static int locate(std::uint32_t controller, std::uint32_t enclosure, std::uint32_t seconds) {
    if (readEnclosureType(controller, enclosure) == kNoEnclosure) {
        std::printf("no enclosure with ID %d in controller #%d is exist!\n", static_cast<int>(enclosure),
                    static_cast<int>(controller));
        return Result::notFound;
    }
    const PhyDrvQuery query = {0, kMaxDrives, kAllDrives, {}};
    LocateReply reply = {};
    q5_getPhyDrvInfo(hbaAddress(controller), 0, &query, &reply, sizeof reply);
    locateDrives(hbaAddress(controller), reply, enclosure, seconds);
    return Result::done;
}

int LocateEnclosure(int wordCount, char** words) {
    std::uint32_t controller = 0, enclosure = 0, seconds = 0;
    const Option options[] = {
        numberOption("-e", "enclosure ID", &enclosure, Result::badId),
        numberOption("-i", "controller ID", &controller, Result::badId),
        numberOption("-s", "seconds", &seconds, Result::badValue),
    };
    for (int index = 3; index < wordCount;) {
        const int result = readOption(words, &index, options);
        // Compatibility: the index is not advanced; the message repeats as long as it can be written.
        if (result == kUnknownOption && std::puts("Invalid command for \"enclosure\"") == EOF)
            return Result::badValue;
        if (result != kUnknownOption && result != Result::done)
            return result;
    }

    // Not locked earlier: the message for a wrong word may repeat forever.
    const int lock = lockChanges();
    const int result = locate(controller, enclosure, seconds);
    unlockChanges(lock);
    return result;
}
