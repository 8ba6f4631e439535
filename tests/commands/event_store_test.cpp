// The event file between sessions: loading, saving, and merging the events of sessions that use the file at
// the same time.
#include "commands/event_store.h"

#include <algorithm>
#include <cstring>
#include <sys/stat.h>

#include "commands/event_buffer.h"
#include "tests/child_process.h"
#include "tests/temp_dir_fixture.h"

namespace {
class EventStore : public TempDirFixture {
protected:
    void SetUp() override {
        TempDirFixture::SetUp();
        g_EventBuffer = {};
    }
    void load() { loadEventBuffer(path("events").c_str()); }
    void save() { saveEventBuffer(path("events").c_str()); }
    void writeImage(const EventBuffer& image) {
        write("events", {reinterpret_cast<const char*>(&image), sizeof image});
    }
    ino_t number() const {
        struct stat info = {};
        EXPECT_EQ(lstat(path("events").c_str(), &info), 0);
        return info.st_ino;
    }
    // The events that another session would display from the file, newest first.
    std::vector<std::uint32_t> saved() {
        const std::string image = content("events");
        EXPECT_EQ(image.size(), sizeof(EventBuffer));
        std::vector<std::uint32_t> ids;
        EXPECT_EQ(runInChild([&] {
                      std::memcpy(&g_EventBuffer, image.data(), sizeof g_EventBuffer);
                      std::string taken;
                      for (HBAEvent event; GetEventFromBuffer(&event);)
                          taken += std::to_string(event.eventId) + "\n";
                      write("taken", taken);
                  }),
                  0);
        std::ifstream stream(path("taken"));
        for (std::uint32_t id; stream >> id;)
            ids.push_back(id);
        std::filesystem::remove(path("taken"));
        return ids;
    }
};
using Ids = std::vector<std::uint32_t>;
} // namespace

static HBAEvent event(std::uint32_t id) {
    HBAEvent made = {};
    made.eventId = id;
    return made;
}

// The image of a session that stored these events, in this order, in an empty buffer.
static EventBuffer imageOf(const Ids& ids) {
    EventBuffer image = {};
    for (const std::uint32_t id : ids) {
        image.position = image.position + 1 < 49 ? image.position + 1 : 0;
        image.slot[image.position] = event(id);
        ++image.count;
    }
    return image;
}

static void store(std::uint32_t id) {
    const HBAEvent stored = event(id);
    AddEventToBuffer(&stored);
}

static std::uint32_t take() {
    HBAEvent taken = {};
    EXPECT_EQ(GetEventFromBuffer(&taken), 1);
    return taken.eventId;
}

static Ids numbers(std::uint32_t first, std::uint32_t last) {
    Ids ids;
    for (std::uint32_t id = first; id <= last; ++id)
        ids.push_back(id);
    return ids;
}

TEST_F(EventStore, SavesTheBufferByteForByte) {
    load();
    store(7);
    store(8);
    EXPECT_EQ(take(), 8u);
    save();
    EventBuffer expected = imageOf({7, 8});
    expected.position = expected.count = 1; // the record that was taken stays in its slot
    EXPECT_EQ(content("events"), std::string(reinterpret_cast<const char*>(&expected), sizeof expected));
}

// No other session has saved the file, so nothing is merged.
TEST_F(EventStore, UpdatesItsOwnImageByteForByte) {
    writeImage(imageOf({1}));
    load();
    store(7);
    store(8);
    EXPECT_EQ(take(), 8u);
    save();
    EventBuffer expected = imageOf({1, 7, 8});
    expected.position = expected.count = 2; // the record that was taken stays in its slot
    EXPECT_EQ(content("events"), std::string(reinterpret_cast<const char*>(&expected), sizeof expected));
}

// Killed between creating its temporary file and renaming it.
TEST_F(EventStore, RemovesTheTemporaryFileOfAKilledSession) {
    write(".cli-0-0.tmp", "begun");
    load();
    store(7);
    save();
    EXPECT_EQ(saved(), Ids{7});
    EXPECT_FALSE(std::filesystem::exists(path(".cli-0-0.tmp")));
}

TEST_F(EventStore, CreatesAMissingFileReadableByAll) {
    const mode_t before = umask(0);
    load();
    save();
    umask(before);
    EXPECT_EQ(content("events"), std::string(sizeof(EventBuffer), '\0'));
    EXPECT_EQ(std::filesystem::status(path("events")).permissions(), std::filesystem::perms(0644));
    EXPECT_EQ(names(), (Names{"events"}));
}

TEST_F(EventStore, RemovesExcessPermissions) {
    writeImage(imageOf({1}));
    chmod(path("events").c_str(), 0666);
    load();
    take();
    save();
    EXPECT_EQ(std::filesystem::status(path("events")).permissions(), std::filesystem::perms(0644));
}

TEST_F(EventStore, DoesNotWriteAnUnchangedFile) {
    writeImage(imageOf(numbers(1, 48)));
    const ino_t before = number();
    load();
    save();
    EXPECT_EQ(number(), before);
    take();
    save();
    EXPECT_NE(number(), before);
}

TEST_F(EventStore, CompletesAShortFile) {
    const EventBuffer image = imageOf({5});
    write("events", {reinterpret_cast<const char*>(&image), 8 + 2 * sizeof(HBAEvent)});
    g_EventBuffer.slot[3] = event(9); // must not remain after loading
    load();
    save();
    EXPECT_EQ(content("events"), std::string(reinterpret_cast<const char*>(&image), sizeof image));
}

TEST_F(EventStore, TruncatesALongFile) {
    const EventBuffer image = imageOf({5});
    write("events", std::string(reinterpret_cast<const char*>(&image), sizeof image) + "more");
    load();
    save();
    EXPECT_EQ(content("events"), std::string(reinterpret_cast<const char*>(&image), sizeof image));
}

TEST_F(EventStore, AddsItsNewEventsToThoseOfAnotherSession) {
    writeImage(imageOf({1, 2}));
    load();
    store(10);
    store(11);
    writeImage(imageOf({1, 2, 20, 21}));
    save();
    EXPECT_EQ(saved(), (Ids{11, 10, 21, 20, 2, 1}));
}

TEST_F(EventStore, RemovesItsDisplayedEventsFromTheFileOfAnotherSession) {
    writeImage(imageOf({1, 2, 3, 4}));
    load();
    EXPECT_EQ(take(), 4u);
    EXPECT_EQ(take(), 3u);
    writeImage(imageOf({1, 2, 3, 4, 20}));
    save();
    EXPECT_EQ(saved(), (Ids{20, 2, 1}));
}

// The 49th event of an empty buffer is in its first slot.
TEST_F(EventStore, RemovesADisplayedEventFromTheFirstSlot) {
    writeImage(imageOf(numbers(1, 49)));
    load();
    EXPECT_EQ(take(), 49u);
    writeImage(imageOf(numbers(2, 49)));
    save();
    Ids left = numbers(2, 48);
    std::reverse(left.begin(), left.end());
    EXPECT_EQ(saved(), left);
}

TEST_F(EventStore, LoadsAFileOfOneByte) {
    write("events", "\5");
    load();
    EXPECT_EQ(g_EventBuffer.position, 5u);
    EXPECT_EQ(g_EventBuffer.count, 0u);
}

TEST_F(EventStore, DoesNotRestoreEventsThatAnotherSessionDisplayed) {
    writeImage(imageOf({1, 2, 3}));
    load();
    store(10);
    writeImage(imageOf({1}));
    save();
    EXPECT_EQ(saved(), (Ids{10, 1}));
}

TEST_F(EventStore, DoesNotSaveEventsThatItFetchedAndDisplayed) {
    writeImage(imageOf({1}));
    load();
    store(10);
    store(11);
    EXPECT_EQ(take(), 11u);
    writeImage(imageOf({1, 20}));
    save();
    EXPECT_EQ(saved(), (Ids{10, 20, 1}));
}

TEST_F(EventStore, RemovesOneOfEqualEventsForEachDisplayed) {
    writeImage(imageOf({1, 5, 5}));
    load();
    take();
    writeImage(imageOf({1, 5, 5, 20}));
    save();
    EXPECT_EQ(saved(), (Ids{20, 5, 1}));
}

TEST_F(EventStore, MergesWithAFileCreatedByAnotherSession) {
    load();
    store(10);
    writeImage(imageOf({20}));
    save();
    EXPECT_EQ(saved(), (Ids{10, 20}));
}

TEST_F(EventStore, RecreatesARemovedFile) {
    writeImage(imageOf({1}));
    load();
    std::filesystem::remove(path("events"));
    save();
    EXPECT_EQ(saved(), (Ids{1}));
}

// An event that a full buffer dropped was not displayed.
TEST_F(EventStore, DoesNotRemoveOverwrittenEvents) {
    writeImage(imageOf(numbers(1, 49)));
    load();
    store(50); // overwrites event 1
    writeImage(imageOf(numbers(1, 10)));
    save();
    EXPECT_EQ(saved(), (Ids{50, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1}));
}

TEST_F(EventStore, DoesNotReplaceAnUnreadableFile) {
    writeImage(imageOf({1}));
    chmod(path("events").c_str(), 0200);
    chmod(directory.c_str(), 0777);
    EXPECT_EQ(runAsNobody([&] {
                  load();
                  EXPECT_EQ(GetBufferEventCount(), 0u);
                  store(10);
                  save();
              }),
              0);
    chmod(path("events").c_str(), 0600);
    EXPECT_EQ(saved(), (Ids{1}));
}

TEST_F(EventStore, DoesNotReplaceADirectory) {
    std::filesystem::create_directory(path("events"));
    load();
    store(10);
    save();
    EXPECT_TRUE(std::filesystem::is_empty(path("events")));
    EXPECT_EQ(names(), (Names{"events"}));
}

TEST_F(EventStore, LeavesADirectoryThatAppeared) {
    load();
    store(10);
    std::filesystem::create_directory(path("events"));
    save();
    EXPECT_TRUE(std::filesystem::is_empty(path("events")));
    EXPECT_EQ(names(), (Names{"events"}));
}

TEST_F(EventStore, CreatesNoDirectory) {
    for (const std::string& name :
         {path("missing/events"), path("file/events"), path(std::string(300, 'x'))}) {
        write("file", "as it was");
        loadEventBuffer(name.c_str());
        EXPECT_EQ(GetBufferEventCount(), 0u);
        store(10);
        saveEventBuffer(name.c_str());
        EXPECT_EQ(names(), (Names{"file"}));
        EXPECT_EQ(content("file"), "as it was");
    }
}

// An empty file holds no events.
TEST_F(EventStore, TreatsAnEmptiedFileAsSavedByAnotherSession) {
    writeImage(imageOf({1, 2}));
    load();
    store(10);
    write("events", "");
    save();
    EXPECT_EQ(saved(), (Ids{10}));
}

TEST_F(EventStore, ToleratesEventsDisplayedByTwoSessions) {
    writeImage(imageOf({1, 2, 3}));
    load();
    EXPECT_EQ(take(), 3u);
    writeImage(imageOf({1, 2}));
    save();
    EXPECT_EQ(saved(), (Ids{2, 1}));
}

TEST_F(EventStore, DoesNotWriteWhatAnotherSessionSavedWithoutEventsOfItsOwn) {
    writeImage(imageOf({1, 2, 3}));
    load();
    writeImage(imageOf({1, 2, 3, 4}));
    const ino_t before = number();
    save();
    EXPECT_EQ(number(), before);
    EXPECT_EQ(saved(), (Ids{4, 3, 2, 1}));
}

// Neither opening a pipe without a writer nor a read from /dev/zero would end.
TEST_F(EventStore, TreatsLinksPipesAndDevicesAsAMissingFile) {
    write("there", "as it was");
    const auto expectReplaced = [&] {
        load();
        EXPECT_EQ(GetBufferEventCount(), 0u);
        store(10);
        save();
        EXPECT_EQ(saved(), (Ids{10}));
        EXPECT_TRUE(std::filesystem::is_regular_file(std::filesystem::symlink_status(path("events"))));
        std::filesystem::remove(path("events"));
    };
    std::filesystem::create_symlink("there", path("events"));
    expectReplaced();
    EXPECT_EQ(content("there"), "as it was");
    std::filesystem::create_symlink("/dev/zero", path("events"));
    expectReplaced();
    ASSERT_EQ(mkfifo(path("events").c_str(), 0600), 0);
    expectReplaced();
}

TEST_F(EventStore, StaysWithinTheSlotsForAnyFileContents) {
    for (const std::uint32_t position : {49u, 50u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        EventBuffer corrupt = imageOf({1, 2});
        corrupt.position = position;
        corrupt.count = 0xFFFFFFFF;
        writeImage(corrupt);
        load();
        store(10);
        take();
        take();
        corrupt.slot[7] = event(70);
        writeImage(corrupt);
        save();
        EXPECT_EQ(saved().size(), 49u) << position;
    }
}
