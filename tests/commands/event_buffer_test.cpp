// The event buffer, its file, and finding the program's directory.
#include "commands/event_buffer.h"
#include "commands/event_path.h"

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "tests/mock_adapter.h"
#include "tests/temp_dir.h"

namespace fs = std::filesystem;

static HBAEvent eventWithId(std::uint32_t id) {
    HBAEvent event = {};
    event.eventId = id;
    return event;
}

// The events first .. last, in this order.
static void store(std::uint32_t first, std::uint32_t last) {
    for (std::uint32_t id = first; id <= last; ++id) {
        const HBAEvent event = eventWithId(id);
        EXPECT_EQ(AddEventToBuffer(&event), 1);
    }
}

static std::uint32_t nextId() {
    HBAEvent event = eventWithId(4711);
    EXPECT_EQ(GetEventFromBuffer(&event), 1);
    return event.eventId;
}

static void loadImage(std::uint32_t position, std::uint32_t count) {
    g_EventBuffer.position = position;
    g_EventBuffer.count = count;
}

namespace {
class EventBufferTest : public testing::Test {
protected:
    void SetUp() override { g_EventBuffer = {}; }
};
using AddEvent = EventBufferTest;
using GetEvent = EventBufferTest;
using CorruptImage = EventBufferTest;
} // namespace

TEST_F(AddEvent, RejectsNullEvent) {
    EXPECT_EQ(AddEventToBuffer(nullptr), 0);
    EXPECT_EQ(GetBufferEventCount(), 0u);
    EXPECT_EQ(g_EventBuffer.position, 0u);
}

TEST_F(AddEvent, StartsWithTheSecondSlot) {
    store(1, 2);
    EXPECT_EQ(g_EventBuffer.position, 2u);
    EXPECT_EQ(g_EventBuffer.count, 2u);
    EXPECT_EQ(g_EventBuffer.slot[0].eventId, 0u);
    EXPECT_EQ(g_EventBuffer.slot[1].eventId, 1u);
    EXPECT_EQ(g_EventBuffer.slot[2].eventId, 2u);
}

TEST_F(AddEvent, UsesEverySlotExceptTheLastFor49Events) {
    store(1, 49);
    EXPECT_EQ(GetBufferEventCount(), 49u);
    EXPECT_EQ(g_EventBuffer.position, 0u);
    for (std::uint32_t slot = 1; slot <= 48; ++slot)
        EXPECT_EQ(g_EventBuffer.slot[slot].eventId, slot);
    EXPECT_EQ(g_EventBuffer.slot[0].eventId, 49u);
    EXPECT_EQ(g_EventBuffer.slot[49].eventId, 0u);
}

TEST_F(AddEvent, OverwritesTheOldestWithThe50th) {
    store(1, 50);
    EXPECT_EQ(GetBufferEventCount(), 50u);
    EXPECT_EQ(g_EventBuffer.position, 1u);
    EXPECT_EQ(g_EventBuffer.slot[1].eventId, 50u);
    EXPECT_EQ(g_EventBuffer.slot[2].eventId, 2u);
}

TEST_F(AddEvent, KeepsTheCountAt50) {
    store(1, 200);
    EXPECT_EQ(GetBufferEventCount(), 50u);
    EXPECT_EQ(g_EventBuffer.count, 50u);
    EXPECT_EQ(g_EventBuffer.slot[49].eventId, 0u);
}

TEST_F(AddEvent, StoresInASlotAfterARemovalThatWrapped) {
    loadImage(0, 2);
    nextId(); // leaves the position at the last slot
    EXPECT_EQ(g_EventBuffer.position, 49u);
    store(7, 8);
    EXPECT_EQ(g_EventBuffer.slot[0].eventId, 7u);
    EXPECT_EQ(g_EventBuffer.slot[1].eventId, 8u);
    EXPECT_EQ(g_EventBuffer.position, 1u);
    EXPECT_EQ(g_EventBuffer.count, 3u);
}

TEST_F(GetEvent, ReturnsZeroForAnEmptyBuffer) {
    HBAEvent event = eventWithId(4711);
    EXPECT_EQ(GetEventFromBuffer(&event), 0);
    EXPECT_EQ(event.eventId, 4711u);
}

TEST_F(GetEvent, RejectsNullTarget) {
    store(1, 1);
    EXPECT_EQ(GetEventFromBuffer(nullptr), 0);
    EXPECT_EQ(GetBufferEventCount(), 1u);
}

TEST_F(GetEvent, ReturnsTheNewestFirst) {
    store(1, 3);
    EXPECT_EQ(nextId(), 3u);
    EXPECT_EQ(nextId(), 2u);
    EXPECT_EQ(nextId(), 1u);
    EXPECT_EQ(GetBufferEventCount(), 0u);
}

TEST_F(GetEvent, CopiesTheWholeRecord) {
    HBAEvent stored, removed = {};
    std::memset(&stored, 0xA5, sizeof stored);
    stored.reserved0[0] = 1;
    stored.description[323] = 2;
    AddEventToBuffer(&stored);
    EXPECT_EQ(GetEventFromBuffer(&removed), 1);
    EXPECT_EQ(bytesOf(removed), bytesOf(stored));
}

TEST_F(GetEvent, ReturnsTheUnusedSlotOfAFullBuffer) {
    store(1, 50);                             // 50 in slot 1, 49 in slot 0, 48 in slot 48
    EXPECT_EQ(nextId(), 50u);                 // slot 1
    EXPECT_EQ(nextId(), 49u);                 // slot 0
    EXPECT_EQ(nextId(), 0u);                  // slot 49
    for (std::uint32_t id = 48; id > 1; --id) // slots 48 to 2
        EXPECT_EQ(nextId(), id);
    EXPECT_EQ(GetBufferEventCount(), 0u);
    HBAEvent event;
    EXPECT_EQ(GetEventFromBuffer(&event), 0);
}

TEST_F(CorruptImage, StoresWithinTheSlots) {
    for (const std::uint32_t position : {48u, 49u, 50u, 5000u, 0x7FFFFFFFu, 0xFFFFFFFEu, 0xFFFFFFFFu}) {
        g_EventBuffer = {};
        loadImage(position, 0xFFFFFFFF);
        store(7, 8);
        EXPECT_EQ(g_EventBuffer.slot[0].eventId, 7u) << position;
        EXPECT_EQ(g_EventBuffer.slot[1].eventId, 8u) << position;
        EXPECT_EQ(GetBufferEventCount(), 50u) << position;
    }
}

TEST_F(CorruptImage, RemovesWithinTheSlots) {
    for (const std::uint32_t position : {49u, 50u, 5000u, 0x80000000u, 0xFFFFFFFFu}) {
        loadImage(position, 0xFFFFFFFF);
        HBAEvent event;
        int removed = 0;
        while (GetEventFromBuffer(&event) && removed < 1000)
            ++removed;
        EXPECT_EQ(removed, 50) << position;
        EXPECT_EQ(GetBufferEventCount(), 0u) << position;
    }
}

// The IDs in the two adjacent slots reveal an off-by-one error.
TEST_F(CorruptImage, TreatsALargePositionAsTheLastSlot) {
    for (const std::uint32_t position : {50u, 51u, 4294967295u}) {
        g_EventBuffer.slot[48].eventId = 1048;
        g_EventBuffer.slot[49].eventId = 1049;
        loadImage(position, 2);
        EXPECT_EQ(nextId(), 1049u) << position;
        EXPECT_EQ(nextId(), 1048u) << position;
    }
}

TEST_F(CorruptImage, TreatsALargeCountAsFifty) {
    for (const std::uint32_t count : {51u, 4294967295u}) {
        loadImage(0, count);
        nextId();
        EXPECT_EQ(g_EventBuffer.count, 49u) << count;
    }
}

TEST_F(CorruptImage, LimitsTheCountToTheSlots) {
    for (const std::uint32_t count : {51u, 0x80000000u, 0xFFFFFFFFu}) {
        loadImage(0, count);
        EXPECT_EQ(GetBufferEventCount(), 50u) << count;
    }
}

namespace {
class EventFile : public EventBufferTest {
protected:
    void writeFile(const std::string& content) const { temporary.write("CLIEvent.dat", content); }
    std::string readFile() const { return temporary.read("CLIEvent.dat"); }

    const TempDir temporary;
    const fs::path directory = temporary.path(), path = directory / "CLIEvent.dat";
};
} // namespace

TEST_F(EventFile, IsTheImageOfTheBuffer) {
    HBAEvent event = eventWithId(0x11223344);
    event.reserved0[0] = 0x5A;
    AddEventToBuffer(&event);
    ASSERT_EQ(WriteEventBufferToFile(path.c_str(), &g_EventBuffer), 1);

    std::string image(20408, '\0');
    image[0] = 1; // position
    image[4] = 1; // count
    image[8 + 408] = 0x5A;
    image.replace(8 + 408 + 12, 4, "\x44\x33\x22\x11");
    EXPECT_EQ(readFile(), image);
}

TEST_F(EventFile, ReplacesALongerFile) {
    writeFile(std::string(30000, 'x'));
    ASSERT_EQ(WriteEventBufferToFile(path.c_str(), &g_EventBuffer), 1);
    EXPECT_EQ(readFile(), std::string(20408, '\0'));
}

TEST_F(EventFile, IsReadBackUnchanged) {
    store(1, 60);
    ASSERT_EQ(WriteEventBufferToFile(path.c_str(), &g_EventBuffer), 1);
    EventBuffer buffer = {};
    EXPECT_EQ(ReadEventBufferFromFile(path.c_str(), &buffer), 1);
    EXPECT_EQ(std::memcmp(&buffer, &g_EventBuffer, sizeof buffer), 0);
}

TEST_F(EventFile, IsReadUpToTheSizeOfTheBuffer) {
    writeFile(std::string(20408, 'a') + "bbbb");
    struct {
        EventBuffer buffer;
        std::uint32_t next;
    } memory = {{}, 4711};
    EXPECT_EQ(ReadEventBufferFromFile(path.c_str(), &memory.buffer), 1);
    EXPECT_EQ(memory.buffer.position, 0x61616161u);
    EXPECT_EQ(memory.buffer.slot[49].description[323], 'a');
    EXPECT_EQ(memory.next, 4711u);
}

TEST_F(EventFile, FillsOnlyItsLength) {
    writeFile(std::string("\x05\0\0\0\x02", 5));
    loadImage(0x01010101, 0x01010101);
    g_EventBuffer.slot[0].eventId = 4711;
    EXPECT_EQ(ReadEventBufferFromFile(path.c_str(), &g_EventBuffer), 1);
    EXPECT_EQ(g_EventBuffer.position, 5u);
    EXPECT_EQ(g_EventBuffer.count, 0x01010102u);
    EXPECT_EQ(g_EventBuffer.slot[0].eventId, 4711u);
}

TEST_F(EventFile, MayBeEmpty) {
    writeFile("");
    loadImage(3, 2);
    EXPECT_EQ(ReadEventBufferFromFile(path.c_str(), &g_EventBuffer), 1);
    EXPECT_EQ(g_EventBuffer.position, 3u);
    EXPECT_EQ(g_EventBuffer.count, 2u);
}

TEST_F(EventFile, CannotBeReadWhenItIsMissing) {
    loadImage(3, 2);
    EXPECT_EQ(ReadEventBufferFromFile(path.c_str(), &g_EventBuffer), 0);
    EXPECT_EQ(ReadEventBufferFromFile((path / "below").c_str(), &g_EventBuffer), 0);
    EXPECT_EQ(g_EventBuffer.position, 3u);
    EXPECT_EQ(g_EventBuffer.count, 2u);
}

TEST_F(EventFile, LeavesTheBufferUnchangedIfItIsADirectory) {
    fs::create_directory(path);
    loadImage(3, 2);
    ReadEventBufferFromFile(path.c_str(), &g_EventBuffer); // systems differ in whether it opens
    EXPECT_EQ(g_EventBuffer.position, 3u);
    EXPECT_EQ(g_EventBuffer.count, 2u);
}

TEST_F(EventFile, CannotBeWrittenToAnInvalidPath) {
    EXPECT_EQ(WriteEventBufferToFile(directory.c_str(), &g_EventBuffer), 0);
    EXPECT_EQ(WriteEventBufferToFile((directory / "missing" / "file").c_str(), &g_EventBuffer), 0);
    writeFile("a file");
    EXPECT_EQ(WriteEventBufferToFile((path / "below").c_str(), &g_EventBuffer), 0);
    EXPECT_EQ(readFile(), "a file");
}

TEST_F(EventFile, CannotBeWrittenWithoutPermission) {
    if (geteuid() == 0)
        GTEST_SKIP() << "the superuser may write everywhere";
    writeFile("a file");
    fs::permissions(path, fs::perms::owner_read);
    EXPECT_EQ(WriteEventBufferToFile(path.c_str(), &g_EventBuffer), 0);
    EXPECT_EQ(readFile(), "a file");
}

TEST(EventFilePath, IsFixed) {
    char path[kEventPathSize];
    GetEventBufferFilePath(path);
    EXPECT_STREQ(path, "/usr/sbin/CLIEvent.dat");
}

static bool hasMemoryMap() {
    return access("/proc/self/maps", R_OK) == 0;
}

static std::string located(const void* address) {
    char* directory = br_locate(address);
    const std::string text = directory != nullptr ? directory : "(null)";
    std::free(directory);
    return text;
}

TEST(BrLocate, FindsTheDirectoryOfTheProgram) {
    const auto* code = reinterpret_cast<const void*>(&br_locate);
    if (!hasMemoryMap())
        EXPECT_EQ(located(code), "(null)");
    else
        EXPECT_EQ(located(code), fs::read_symlink("/proc/self/exe").parent_path().string() + "/");
}

TEST(BrLocate, ReturnsNullForDataAndNull) {
    const int onTheStack = 0;
    EXPECT_EQ(located(&onTheStack), "(null)");
    EXPECT_EQ(located(&g_EventBuffer), "(null)");
    EXPECT_EQ(located(nullptr), "(null)");
}

// The mapping that contains an address is code from its first byte to the byte before its end.
TEST(BrLocate, IncludesTheFirstAndTheLastByteOfTheCode) {
    if (!hasMemoryMap())
        GTEST_SKIP() << "there is no memory map here";
    const auto code = reinterpret_cast<std::uintptr_t>(&br_locate);
    std::ifstream maps("/proc/self/maps");
    std::uintptr_t start = 0, end = 0;
    for (std::string line; std::getline(maps, line) && !(start <= code && code < end);)
        ASSERT_EQ(std::sscanf(line.c_str(), "%lx-%lx", &start, &end), 2);
    const std::string directory = located(reinterpret_cast<const void*>(code));
    EXPECT_EQ(located(reinterpret_cast<const void*>(start)), directory);
    EXPECT_EQ(located(reinterpret_cast<const void*>(end - 1)), directory);
    EXPECT_EQ(located(reinterpret_cast<const void*>(end)), "(null)");
}
