// The enclosure command: listing sensors and locating drives.
#include "commands/enclosure.h"

#include <unistd.h>

#include <csignal>

#include "adapter/enclosure.h"
#include "adapter/phydrv.h"
#include "tests/mock_adapter.h"

using EnclosureList = MockAdapterTest;
using EnclosureLocate = MockAdapterTest;

static void expectEnclosure(std::uint32_t controller, std::uint16_t enclosure, std::uint8_t type,
                            int result = 0) {
    Bytes reply(320, 0xA5); // a pattern, including the byte count
    reply[78] = type;
    expectCall("q5_getEnclosureInfo", queryFor(controller, EnclosureQuery{enclosure, 1}, 320), reply, result);
}

static void expectNoEnclosure(std::uint32_t controller, std::uint16_t enclosure) {
    expectCall("q5_getEnclosureInfo", queryFor(controller, EnclosureQuery{enclosure, 1}, 320));
}

namespace {
struct Sensor {
    std::uint8_t type;
    std::uint32_t reading;
};
} // namespace

static void expectStatus(std::uint32_t controller, std::uint16_t enclosure,
                         const std::vector<Sensor>& sensors, int result = 0) {
    Bytes reply(68, 0xA5);
    for (const Sensor& sensor : sensors)
        reply = concat({reply, {sensor.type, 0xA5, 0xA5, 0xA5}, bytesOf(sensor.reading)});
    expectCall("q5_getEnclosureStatus", queryFor(controller, EnclosureQuery{enclosure, 1}, 116), reply,
               result);
}

static std::uint32_t below(int reading) {
    return static_cast<std::uint32_t>(reading);
}

// The listing of an enclosure with this type and these sensors.
static std::string sensorListing(std::uint8_t type, const std::vector<Sensor>& sensors) {
    expectEnclosure(0, 0, type);
    expectStatus(0, 0, sensors);
    return outcomeOf(ListEnclosureInfo, "enclosure");
}

TEST_F(EnclosureList, NumbersTheFirstSensorOneAndAllOthersTwo) {
    EXPECT_EQ(sensorListing(1, {{1, 3000}, {5, 31}, {1, 3100}, {0, 9}, {5, 32}, {5, 33}}),
              "0: Enclosure type : Traybox 400\n"
              "Fan speed #1 : 3000 \nTemperature #1 : 31 C\nFan speed #2 : 3100 \n"
              "Temperature #2 : 32 C\nTemperature #2 : 33 C\n");
    EXPECT_EQ(sensorListing(1, {{5, 1}, {1, 2}, {1, 3}, {1, 4}, {1, 5}, {5, 6}}),
              "0: Enclosure type : Traybox 400\n"
              "Temperature #1 : 1 C\nFan speed #1 : 2 \nFan speed #2 : 3 \nFan speed #2 : 4 \n"
              "Fan speed #2 : 5 \nTemperature #2 : 6 C\n");
}

TEST_F(EnclosureList, NumbersNoSensorsOfTraybox100) {
    EXPECT_EQ(sensorListing(2, {{1, 3000}, {5, 31}, {1, 3100}, {3, 5020}, {4, 11990}, {5, 33}}),
              "0: Enclosure type : Traybox 100\n"
              "Fan speed : 3000 \nTemperature : 31 C\nFan speed : 3100 \n"
              "5 Voltage : 5.02 V\n12 Voltage : 11.99 V\nTemperature : 33 C\n");
}

TEST_F(EnclosureList, ShowsVoltagesUnsignedInSinglePrecisionAndTheRestSigned) {
    EXPECT_EQ(
        sensorListing(1, {{3, 5005}, {4, 12345}, {3, 0xFFFFFFFF}, {4, 0}, {1, below(-1)}, {5, below(-40)}}),
        "0: Enclosure type : Traybox 400\n"
        "5 Voltage : 5.01 V\n12 Voltage : 12.35 V\n5 Voltage : 4294967.50 V\n12 Voltage : 0.00 V\n"
        "Fan speed #1 : -1 \nTemperature #1 : -40 C\n");
}

TEST_F(EnclosureList, SkipsUnknownSensors) {
    for (const std::uint8_t type : Bytes{1, 2})
        EXPECT_EQ(sensorListing(type, {{0, 1}, {2, 2}, {6, 3}, {255, 4}, {7, 5}, {129, 6}}),
                  std::string("0: Enclosure type : Traybox ") + (type == 1 ? "400\n" : "100\n"));
    expectEnclosure(0, 0, 1);
    expectCall("q5_getEnclosureStatus", queryFor(0, EnclosureQuery{0, 1}, 116), {}, 1);
    EXPECT_EQ(outcomeOf(ListEnclosureInfo, "enclosure"), "0: Enclosure type : Traybox 400\n");
}

TEST_F(EnclosureList, PrintsNothingForOtherTypes) {
    for (const std::uint8_t type : Bytes{3, 4, 5, 6, 7, 255})
        EXPECT_EQ(sensorListing(type, {{1, 3000}, {5, 31}, {3, 5020}, {4, 1}, {5, 2}, {1, 3}}), "0: ");
}

TEST_F(EnclosureList, UsesTheTypeAndNotTheResults) {
    expectEnclosure(1, 3, 2, -1);
    expectStatus(1, 3, {{1, 7}}, 1);
    EXPECT_EQ(outcomeOf(ListEnclosureInfo, "enclosure -e 3 -i 1"),
              "0: Enclosure type : Traybox 100\nFan speed : 7 \n");
}

TEST_F(EnclosureList, ReportsMissingEnclosure) {
    const std::pair<const char*, const char*> lines[] = {{"enclosure", "0 in controller #0"},
                                                         {"enclosure -a list", "0 in controller #0"},
                                                         {"ENCLOSURE -A LIST", "0 in controller #0"},
                                                         {"enclosure -a -v", "0 in controller #0"},
                                                         {"enclosure -e 0 -i 0", "0 in controller #0"}};
    for (const auto& [line, named] : lines) {
        expectEnclosure(0, 0, 0);
        EXPECT_EQ(outcomeOf(ListEnclosureInfo, line),
                  std::string("0: no enclosure with ID ") + named + " is present!\n");
    }
    for (const char* line : {"enclosure -e 5 -i 2", "enclosure -I 2 -E 5", "enclosure -a list -e 5 -i 2",
                             "enclosure -e 1 -e 5 -i 1 -i 2"}) {
        expectNoEnclosure(2, 5);
        EXPECT_EQ(outcomeOf(ListEnclosureInfo, line),
                  "0: no enclosure with ID 5 in controller #2 is present!\n");
    }
}

TEST_F(EnclosureList, RejectsInvalidOptionsBeforeAnyCall) {
    EXPECT_EQ(outcomeOf(ListEnclosureInfo, "enclosure -e x"), "6: Invalid enclosure ID 'x' specified\n");
    EXPECT_EQ(outcomeOf(ListEnclosureInfo, "enclosure -e"), "6: Invalid enclosure ID '' specified\n");
    EXPECT_EQ(outcomeOf(ListEnclosureInfo, "enclosure -i -1 -e x"),
              "6: Invalid controller ID '-1' specified\n");
    EXPECT_EQ(outcomeOf(ListEnclosureInfo, "enclosure -v"), "1: Invalid command for \"enclosure\"\n");
    EXPECT_EQ(outcomeOf(ListEnclosureInfo, "enclosure list"), "1: Invalid command for \"enclosure\"\n");
    EXPECT_EQ(outcomeOf(ListEnclosureInfo, "enclosure -a list -s 5"),
              "1: Invalid command for \"enclosure\"\n");
    EXPECT_EQ(outcomeOf(ListEnclosureInfo, "enclosure -e 1 -a list"),
              "1: Invalid command for \"enclosure\"\n");
}

TEST_F(EnclosureList, ReadsMissingValueFromAStaleSlotButNotPastTheTable) {
    expectNoEnclosure(0, 4);
    EXPECT_EQ(run(ListEnclosureInfo, splitWords("enclosure -e"), {"4"}).result, 0);
    std::vector<std::string> words(16, "-i");
    words[1] = "-a";
    for (std::size_t i = 4; i < 16; i += 2)
        words[i] = "1";
    EXPECT_EQ(run(ListEnclosureInfo, words).output, "Invalid controller ID '' specified\n");
}

// The reply to a query for drives, with known bytes where the locate action compares them.
namespace {
struct DriveReply {
    Bytes bytes = Bytes(42752, 0xA5);
    explicit DriveReply(std::uint32_t bytesUsed) { std::memcpy(&bytes[36], &bytesUsed, 4); }
    // Sets the entry that is compared after this number of matches.
    DriveReply& entry(std::size_t step, std::uint16_t enclosure, std::uint16_t drive) {
        std::memcpy(&bytes[256 + step * 664 + 14], &enclosure, 2);
        std::memcpy(&bytes[256 + step * 664 + 4], &drive, 2);
        return *this;
    }
};
} // namespace

static constexpr std::uint32_t usedBy(std::uint32_t drives) {
    return 64 + drives * 664;
}

static void expectDrives(std::uint32_t controller, const Bytes& reply, int result = 0) {
    expectCall("q5_getPhyDrvInfo", queryFor(controller, PhyDrvQuery{0, 16, 255, {}}, 42752), reply, result);
}

static void expectBlink(std::uint16_t drive, std::uint32_t seconds, int result = 0) {
    expectCall("q5_locatePhyDrv", bytesOf(hbaAddress(1), std::uint32_t{0}, drive, seconds), {}, result);
}

TEST_F(EnclosureLocate, BlinksEachMatchingDrive) {
    for (const char* line : {"enclosure -a locate -e 3 -i 1 -s 30", "ENCLOSURE -A LOCATE -S 30 -I 1 -E 3"}) {
        expectEnclosure(1, 3, 6, -1);
        expectDrives(1, DriveReply(usedBy(2)).entry(0, 3, 7).entry(1, 3, 65535).entry(2, 3, 9).bytes, -1);
        expectBlink(7, 30, 1);
        expectBlink(65535, 30, -1);
        EXPECT_EQ(outcomeOf(LocateEnclosure, line), "0: ");
    }
}

TEST_F(EnclosureLocate, StopsBlinkingWithoutADuration) {
    for (const char* line : {"enclosure -a locate -e 3 -i 1", "enclosure -a locate -i 1 -e 3 -s 5 -s 0"}) {
        expectEnclosure(1, 3, 1);
        expectDrives(1, DriveReply(usedBy(1)).entry(0, 3, 2).bytes);
        expectCall("q5_stopLocatePhyDrv", bytesOf(hbaAddress(1), std::uint32_t{0}, std::uint16_t{2}), {}, 1);
        EXPECT_EQ(outcomeOf(LocateEnclosure, line), "0: ");
    }
}

TEST_F(EnclosureLocate, AdvancesOnlyAfterAMatch) {
    expectEnclosure(1, 3, 1);
    expectDrives(1, DriveReply(usedBy(4)).entry(0, 3, 0).entry(1, 2, 1).entry(2, 3, 2).bytes);
    expectBlink(0, 30);
    EXPECT_EQ(outcomeOf(LocateEnclosure, "enclosure -a locate -e 3 -i 1 -s 30"), "0: ");
    expectEnclosure(1, 3, 1);
    expectDrives(1, DriveReply(usedBy(16)).entry(0, 0x0103, 0).entry(1, 3, 1).entry(2, 3, 2).bytes);
    EXPECT_EQ(outcomeOf(LocateEnclosure, "enclosure -a locate -e 3 -i 1 -s 30"), "0: ");
}

TEST_F(EnclosureLocate, ComparesOncePerCompleteEntry) {
    const std::pair<std::uint32_t, int> used[] = {
        {0, 0}, {63, 0}, {64, 0}, {727, 0}, {728, 1}, {usedBy(2) - 1, 1}, {usedBy(2), 2}, {usedBy(3) - 1, 2}};
    for (const auto& [bytes, steps] : used) {
        expectEnclosure(1, 3, 1);
        expectDrives(1, DriveReply(bytes).entry(0, 3, 0).entry(1, 3, 1).entry(2, 3, 2).bytes);
        for (int step = 0; step < steps; ++step)
            expectBlink(static_cast<std::uint16_t>(step), 1);
        EXPECT_EQ(outcomeOf(LocateEnclosure, "enclosure -a locate -e 3 -i 1 -s 1"), "0: ") << bytes;
    }
}

// 64 entries fit in the buffer; a 65th would start at its end.
TEST_F(EnclosureLocate, StaysWithinTheBuffer) {
    for (const std::uint32_t bytes : {usedBy(64), usedBy(65), usedBy(66), 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        DriveReply reply(bytes);
        for (std::uint16_t step = 0; step < 64; ++step)
            reply.entry(step, 3, step);
        expectEnclosure(1, 3, 1);
        expectDrives(1, reply.bytes);
        for (std::uint16_t step = 0; step < 64; ++step)
            expectBlink(step, 4294967295);
        EXPECT_EQ(outcomeOf(LocateEnclosure, "enclosure -a locate -e 3 -i 1 -s 4294967295"), "0: ") << bytes;
    }
}

TEST_F(EnclosureLocate, DoesNothingWithoutDrives) {
    expectEnclosure(0, 0, 1);
    expectDrives(0, {});
    EXPECT_EQ(outcomeOf(LocateEnclosure, "enclosure -a locate"), "0: ");
}

TEST_F(EnclosureLocate, ReportsMissingEnclosure) {
    expectNoEnclosure(0, 0);
    EXPECT_EQ(outcomeOf(LocateEnclosure, "enclosure -a locate"),
              "5: no enclosure with ID 0 in controller #0 is exist!\n");
    expectEnclosure(1, 3, 0);
    EXPECT_EQ(outcomeOf(LocateEnclosure, "enclosure -a locate -e 3 -i 1 -s 5"),
              "5: no enclosure with ID 3 in controller #1 is exist!\n");
}

TEST_F(EnclosureLocate, RejectsInvalidNumbersBeforeAnyCall) {
    EXPECT_EQ(outcomeOf(LocateEnclosure, "enclosure -a locate -e x"),
              "6: Invalid enclosure ID 'x' specified\n");
    EXPECT_EQ(outcomeOf(LocateEnclosure, "enclosure -a locate -i"),
              "6: Invalid controller ID '' specified\n");
    EXPECT_EQ(outcomeOf(LocateEnclosure, "enclosure -a locate -s 5s -e x"),
              "1: Invalid seconds '5s' specified\n");
    EXPECT_EQ(outcomeOf(LocateEnclosure, "enclosure -a locate -e 1 -s -1"),
              "1: Invalid seconds '-1' specified\n");
    expectNoEnclosure(0, 4);
    EXPECT_EQ(run(LocateEnclosure, splitWords("enclosure -a locate -e"), {"4"}).result, 5);
    std::vector<std::string> words(16, "-s");
    for (std::size_t i = 4; i < 16; i += 2)
        words[i] = "1";
    EXPECT_EQ(run(LocateEnclosure, words).output, "Invalid seconds '' specified\n");
}

static char* text(const char* word) {
    return const_cast<char*>(word);
}

// Locates with an unknown option, printing into a pipe from which only the first lines are read.
[[noreturn]] static void locateIntoAClosedPipe() {
    int ends[2];
    std::signal(SIGPIPE, SIG_DFL);
    if (pipe(ends) != 0)
        _exit(1);
    const pid_t reader = fork();
    if (reader == 0) {
        close(ends[1]);
        const std::string line = "Invalid command for \"enclosure\"\n";
        std::string read(3 * line.size(), '\0');
        std::FILE* stream = fdopen(ends[0], "r");
        const bool whole = std::fread(read.data(), 1, read.size(), stream) == read.size();
        _exit(whole && read == line + line + line ? 0 : kill(getppid(), SIGUSR1));
    }
    dup2(ends[1], STDOUT_FILENO);
    close(ends[0]);
    close(ends[1]);
    char* words[] = {text("enclosure"), text("-a"), text("locate"), text("-x"), text("1")};
    LocateEnclosure(5, words); // not run(), whose capture file would grow without limit
    _exit(0);
}

TEST_F(EnclosureLocate, RepeatsTheMessageForAnUnknownOption) {
    EXPECT_EXIT(locateIntoAClosedPipe(), testing::KilledBySignal(SIGPIPE), "");
}
