// The event command and the file that stores events between runs.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>

#include "tests/e2e/harness.h"

static constexpr std::size_t kHeadSize = 8, kSlotSize = 408, kFileSize = kHeadSize + 50 * kSlotSize;
static const std::string kHeadline = "Event_Index  Event_ID\n";

struct Event : testing::Test {
    Session s;
    Event() { s.useWorld(fixtureWorld("two_controllers")); }
};

// The image of an event file with nothing in its slots.
static std::string eventFile(std::uint32_t position, std::uint32_t count) {
    std::string image(kFileSize, '\0');
    image.replace(0, 4, reinterpret_cast<const char*>(&position), 4);
    image.replace(4, 4, reinterpret_cast<const char*>(&count), 4);
    return image;
}

static void putEvent(std::string& image, std::size_t slot, char id, const std::string& text) {
    image[kHeadSize + slot * kSlotSize + 12] = id;
    image.replace(kHeadSize + slot * kSlotSize + 84, text.size(), text);
}

TEST_F(Event, ShowsNewest) {
    EXPECT_EQ(s.run({"event"}), (ProcessOutcome{0, kHeadline + "          0  0xff\n", ""}));
    EXPECT_EQ(s.run({"EVENT", "-V"}), (ProcessOutcome{0, "EventID: 0xff \nEvent Desciption: Third\n", ""}));
    EXPECT_EQ(s.run({"event", "-c", "0"}), (ProcessOutcome{0, kHeadline + "          0  0xff\n", ""}));
    EXPECT_EQ(s.run({"event", "-c", "101"}), (ProcessOutcome{0, kHeadline + "          0  0xff\n", ""}));
}

TEST_F(Event, ShowsRequestedCountNewestFirst) {
    EXPECT_EQ(s.run({"event", "-c", "100"}), (ProcessOutcome{0,
                                                             kHeadline + "          0  0xff\n"
                                                                         "          1  0x12\n"
                                                                         "          2  0x11\n",
                                                             ""}));
    EXPECT_EQ(s.run({"event", "-a", "list", "-c", "2", "-v"}),
              (ProcessOutcome{0,
                              "EventID: 0xff \nEvent Desciption: Third\n"
                              "EventID: 0x12 \nEvent Desciption: Second, with 100% of it\n",
                              ""}));
}

TEST_F(Event, ReportsNoEvent) {
    EXPECT_EQ(s.run({"event", "-i", "1"}), (ProcessOutcome{0, "No event!\n", ""}));
    EXPECT_EQ(s.run({"event", "-i", "1", "-v"}), (ProcessOutcome{0, "No event!\n", ""}));
}

TEST_F(Event, RejectsBadOptions) {
    EXPECT_EQ(s.run({"event", "-i", "x"}), (ProcessOutcome{6, "Invalid controller ID 'x' specified\n", ""}));
    EXPECT_EQ(s.run({"event", "-c", "x"}), (ProcessOutcome{1, "Invalid event count 'x' specified\n", ""}));
    EXPECT_EQ(s.run({"event", "-v", "-x"}), (ProcessOutcome{1, "Invalid parameters defined\n", ""}));
    EXPECT_EQ(s.run({"event", "clear"}), (ProcessOutcome{9, "Invalid command for \"event\"\n", ""}));
}

TEST_F(Event, WritesWholeFileNextToWorld) {
    s.run({"help"});
    EXPECT_EQ(readFile(s.eventFile()), std::string(kFileSize, '\0'));
    s.prompt("exit\n");
    EXPECT_EQ(readFile(s.eventFile()).size(), kFileSize);
}

// Slots are filled starting with the second.
TEST_F(Event, RemovesShownEvents) {
    s.run({"event"});
    const std::string image = readFile(s.eventFile());
    EXPECT_EQ(image.substr(0, kHeadSize), std::string(kHeadSize, '\0'));
    EXPECT_STREQ(image.c_str() + kHeadSize + kSlotSize + 84, "Third");
}

TEST_F(Event, ShowsStoredEventsOnce) {
    std::string image = eventFile(2, 2);
    putEvent(image, 1, 0x21, "left before the last");
    putEvent(image, 2, 0x22, "left last");
    writeFile(s.eventFile(), image);
    EXPECT_EQ(s.run({"event", "-i", "1", "-v"}),
              (ProcessOutcome{0, "EventID: 0x22 \nEvent Desciption: left last\n", ""}));
    EXPECT_EQ(s.run({"help", "exit"}).status, 2);
    EXPECT_EQ(s.prompt("event -i 1 -c 3\nevent -i 1\n"),
              (ProcessOutcome{0, "cli>" + kHeadline + "          0  0x21\ncli>No event!\ncli>", ""}));
    EXPECT_EQ(s.run({"event", "-i", "1"}), (ProcessOutcome{0, "No event!\n", ""}));
}

TEST_F(Event, ShowsFetchedEventsBeforeStored) {
    std::string image = eventFile(1, 1);
    putEvent(image, 1, 0x21, "left");
    writeFile(s.eventFile(), image);
    EXPECT_EQ(s.run({"event"}), (ProcessOutcome{0, kHeadline + "          0  0xff\n", ""}));
    EXPECT_EQ(s.run({"event", "-i", "1"}), (ProcessOutcome{0, kHeadline + "          0  0x21\n", ""}));
}

TEST_F(Event, AcceptsTruncatedFile) {
    writeFile(s.eventFile(), eventFile(1, 1).substr(0, kHeadSize));
    EXPECT_EQ(s.run({"event", "-i", "1"}), (ProcessOutcome{0, kHeadline + "          0  0x0\n", ""}));
    writeFile(s.eventFile(), "");
    EXPECT_EQ(s.run({"event", "-i", "1"}), (ProcessOutcome{0, "No event!\n", ""}));
}

// An untrusted file: at most the fifty slots are used.
TEST_F(Event, StaysWithinSlotsForAnyFile) {
    for (const std::uint32_t position : {49u, 50u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        writeFile(s.eventFile(), eventFile(position, 0xFFFFFFFF));
        const ProcessOutcome outcome = s.run({"event", "-i", "1", "-c", "100"});
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.out.size(), kHeadline.size() + 50 * std::string("          0  0x0\n").size())
            << position;
        EXPECT_EQ(s.run({"event", "-i", "1"}).out, "No event!\n");
    }
}

TEST_F(Event, WorksWithoutWritableFile) {
    std::filesystem::create_directory(s.eventFile());
    EXPECT_EQ(s.run({"event", "-i", "1"}), (ProcessOutcome{0, "No event!\n", ""}));
    EXPECT_EQ(s.run({"event"}), (ProcessOutcome{0, kHeadline + "          0  0xff\n", ""}));
    EXPECT_TRUE(std::filesystem::is_empty(s.eventFile()));
}
