// Faults: each is recorded with the object that the call was about, and the rest is still read.
#include <gtest/gtest.h>

#include <cstring>

#include "adapter/reply.h"
#include "snapshot/read.h"
#include "tests/snapshot/reply_stub.h"

template <typename Record>
static void put(void* reply, const Record& record) {
    std::memcpy(reply, &record, sizeof record);
}

// A list reply with these records, whose header announces the given number of bytes.
template <typename Record>
static void putList(void* reply, const std::vector<Record>& records, std::size_t announced) {
    auto* header = static_cast<ReplyHeader*>(reply);
    header->bytesUsed = static_cast<std::uint32_t>(announced);
    if (!records.empty())
        std::memcpy(header + 1, records.data(), records.size() * sizeof(Record));
}

template <typename Record>
static void putList(void* reply, const std::vector<Record>& records) {
    putList(reply, records, sizeof(ReplyHeader) + records.size() * sizeof(Record));
}

static PhyDrvInfo driveOf(std::uint16_t id) {
    PhyDrvInfo drive = {};
    drive.driveId = id;
    std::memcpy(drive.serial, "SERIAL", 6);
    return drive;
}

static LogDrvInfo arrayOf(std::uint16_t id, std::vector<std::uint8_t> members) {
    LogDrvInfo drive = {};
    drive.arrayId = id;
    drive.logDrvId = id;
    drive.diskCount = static_cast<std::uint16_t>(members.size());
    std::copy(members.begin(), members.end(), drive.memberIds);
    return drive;
}

// A controller of one drive and one logical drive on it, unless a test answers something else first.
struct Faulty : testing::Test {
    Responder special = [](const std::string&, void*, std::size_t) { return -1; };

    // special returns -1 for what it does not answer.
    Controller read() {
        respondInTest = [&](const std::string& operation, void* reply, std::size_t size) {
            const int result = special(operation, reply, size);
            return result >= 0 ? result : healthy(operation, reply);
        };
        return readController(0);
    }
    static int healthy(const std::string& operation, void* reply) {
        if (operation == "q5_getPhyDrvInfo")
            putList<PhyDrvInfo>(reply, {driveOf(0)});
        if (operation == "q5_getLogDrvInfo")
            putList<LogDrvInfo>(reply, {arrayOf(0, {0})});
        return 0;
    }
    void replyWith(const std::string& wanted, std::function<int(void* reply, std::size_t size)> answer) {
        special = [=](const std::string& operation, void* reply, std::size_t size) {
            return operation == wanted ? answer(reply, size) : -1;
        };
    }
};

using FaultList = std::vector<Fault>;

TEST_F(Faulty, HealthyControllerHasNone) {
    const Controller controller = read();
    EXPECT_EQ(controller.faults, FaultList());
    ASSERT_EQ(controller.drives.size(), 1u);
    EXPECT_EQ(controller.drives[0].number, 1u);
    EXPECT_EQ(controller.drives[0].faults, FaultList());
    ASSERT_EQ(controller.logicalDrives.size(), 1u);
    EXPECT_EQ(controller.logicalDrives[0].faults, FaultList());
    EXPECT_EQ(controller.logicalDrives[0].members[0].serial, "SERIAL");
}

TEST_F(Faulty, RefusedOperationLeavesItsPartEmpty) {
    replyWith("q5_getBatteryInfo", [](void*, std::size_t) { return 8; });
    const Controller controller = read();
    EXPECT_FALSE(controller.battery);
    EXPECT_TRUE(controller.info);
    EXPECT_EQ(controller.drives.size(), 1u);
    EXPECT_EQ(controller.faults, (FaultList{{"q5_getBatteryInfo", FaultKind::refused, 8}}));
}

TEST_F(Faulty, UnknownBuzzerIsNoFault) {
    replyWith("q5_getBuzzerStatus", [](void*, std::size_t) { return 1; });
    const Controller controller = read();
    EXPECT_FALSE(controller.buzzer);
    EXPECT_EQ(controller.faults, FaultList());
}

TEST_F(Faulty, FaultOfADriveBelongsToTheDrive) {
    replyWith("q5_getHBAMediaPatrolProgress", [](void*, std::size_t) { return 1; });
    const Controller controller = read();
    EXPECT_EQ(controller.faults, FaultList());
    EXPECT_EQ(controller.drives[0].faults,
              (FaultList{{"q5_getHBAMediaPatrolProgress", FaultKind::refused, 1}}));
    EXPECT_FALSE(controller.drives[0].patrol);
    EXPECT_TRUE(controller.drives[0].settings);
}

// One byte beyond the announced size is detected, for records and for single numbers.
TEST_F(Faulty, OverrunIsDetected) {
    const std::pair<const char*, std::int64_t> operations[] = {{"q5_getDriverInfo", 16},
                                                               {"q5_getDiscoverPath", 656},
                                                               {"q5_getBatteryInfo", 112},
                                                               {"q5_getBuzzerStatus", 1},
                                                               {"q5_getControllerSettings", 88}};
    for (const auto& [operation, announced] : operations) {
        replyWith(operation, [](void* reply, std::size_t size) {
            static_cast<std::uint8_t*>(reply)[size] = 0;
            return 0;
        });
        EXPECT_EQ(read().faults, (FaultList{{operation, FaultKind::overrun, announced}}));
    }
}

TEST_F(Faulty, OverrunOfAListKeepsItsRecords) {
    replyWith("q5_getPhyDrvInfo", [](void* reply, std::size_t size) {
        putList<PhyDrvInfo>(reply, {driveOf(4)});
        static_cast<std::uint8_t*>(reply)[size + 200] = 1;
        return 0;
    });
    const Controller controller = read();
    ASSERT_EQ(controller.drives.size(), 1u);
    EXPECT_EQ(controller.drives[0].number, 5u);
    EXPECT_EQ(controller.faults, (FaultList{{"q5_getPhyDrvInfo", FaultKind::overrun, 10688}}));
}

TEST_F(Faulty, ImpossibleByteCountIsBounded) {
    replyWith("q5_getLogDrvInfo", [](void* reply, std::size_t) {
        putList<LogDrvInfo>(reply, {arrayOf(0, {0})}, 0xFFFFFFFF);
        return 0;
    });
    const Controller controller = read();
    EXPECT_EQ(controller.faults[0], (Fault{"q5_getLogDrvInfo", FaultKind::impossible, 0xFFFFFFFF}));
    // The rest of the buffer is zero: 127 more records of logical drive 0.
    EXPECT_EQ(controller.faults.size(), 128u);
    EXPECT_EQ(controller.faults[1], (Fault{"q5_getLogDrvInfo", FaultKind::repeated, 0}));
    EXPECT_EQ(controller.logicalDrives.size(), 1u);
}

TEST_F(Faulty, ByteCountBelowTheHeaderIsAnEmptyList) {
    replyWith("q5_getLogDrvInfo", [](void* reply, std::size_t) {
        putList<LogDrvInfo>(reply, {}, 63);
        return 0;
    });
    EXPECT_EQ(read().logicalDrives.size(), 0u);
    EXPECT_EQ(read().faults, FaultList());
}

TEST_F(Faulty, ImpossibleMemberCountIsBounded) {
    replyWith("q5_getLogDrvInfo", [](void* reply, std::size_t) {
        LogDrvInfo drive = arrayOf(0, {});
        drive.diskCount = 33;
        putList<LogDrvInfo>(reply, {drive});
        return 0;
    });
    const Controller controller = read();
    EXPECT_EQ(controller.logicalDrives[0].members.size(), 32u);
    EXPECT_EQ(controller.logicalDrives[0].faults,
              (FaultList{{"q5_getLogDrvInfo", FaultKind::impossible, 33}}));
}

TEST_F(Faulty, ImpossibleExtentCountIsBounded) {
    replyWith("q5_getPhyDrvInfo", [](void* reply, std::size_t) {
        PhyDrvInfo drive = driveOf(0);
        drive.extentCount = 17;
        putList<PhyDrvInfo>(reply, {drive});
        return 0;
    });
    EXPECT_EQ(read().drives[0].faults, (FaultList{{"q5_getPhyDrvInfo", FaultKind::impossible, 17}}));
}

// An adapter that always answers with the same page would be called endlessly.
TEST_F(Faulty, RepeatedPageEndsTheListing) {
    replyWith("q5_getPhyDrvInfo", [](void* reply, std::size_t) {
        std::vector<PhyDrvInfo> page;
        for (std::uint16_t id = 0; id < 16; ++id)
            page.push_back(driveOf(id));
        putList(reply, page);
        return 0;
    });
    const Controller controller = read();
    EXPECT_EQ(controller.drives.size(), 16u);
    EXPECT_EQ(controller.faults, (FaultList{{"q5_getPhyDrvInfo", FaultKind::repeated, 0}}));
}

TEST_F(Faulty, DriveSettingsOfAnotherDriveAreNotTaken) {
    replyWith("q5_getPhyDrvSettings", [](void* reply, std::size_t) {
        Reply<PhyDrvSettings, 1> settings = {};
        settings.record[0].pdId = 9;
        put(reply, settings);
        return 0;
    });
    const Controller controller = read();
    EXPECT_FALSE(controller.drives[0].settings);
    EXPECT_EQ(controller.drives[0].faults, (FaultList{{"q5_getPhyDrvSettings", FaultKind::foreign, 9}}));
}

TEST_F(Faulty, ProgressBeyond100IsAFault) {
    special = [](const std::string& operation, void* reply, std::size_t) {
        if (operation == "q5_getLogDrvInfo") {
            LogDrvInfo drive = arrayOf(0, {0});
            drive.activityStatus = kMigrating;
            putList<LogDrvInfo>(reply, {drive});
            return 0;
        }
        if (operation != "q5_getMigrationProgress")
            return -1;
        MigrationProgress progress = {};
        progress.percent = 101;
        put(reply, progress);
        return 0;
    };
    const Controller controller = read();
    ASSERT_EQ(controller.logicalDrives[0].activities.size(), 1u);
    EXPECT_EQ(controller.logicalDrives[0].activities[0].percent, 101);
    EXPECT_EQ(controller.logicalDrives[0].faults,
              (FaultList{{"q5_getMigrationProgress", FaultKind::impossible, 101}}));
}

// The mask has a bit for each of 32 drives, named by the logical drive or not.
TEST_F(Faulty, LostDriveThatIsNoMemberIsAddedToTheMembers) {
    replyWith("q5_getAryLostDisk", [](void* reply, std::size_t) {
        put(reply, std::uint32_t{0x80000001});
        return 0;
    });
    const std::vector<Member> members = read().logicalDrives[0].members;
    ASSERT_EQ(members.size(), 2u);
    EXPECT_TRUE(members[0].lost && members[0].named && members[0].listed);
    EXPECT_EQ(members[1].number, 32u);
    EXPECT_TRUE(members[1].lost && !members[1].named && !members[1].listed);
}

TEST_F(Faulty, ControllersAreBounded) {
    respondInTest = [](const std::string& operation, void* reply, std::size_t) {
        if (operation == "q5_getNumberOfHBA")
            put(reply, std::uint32_t{4000000000});
        return operation == "q5_getPhyDrvInfo" ? 1 : 0;
    };
    Snapshot snapshot;
    EXPECT_EQ(openAdapters(&snapshot), OpenResult::opened);
    readControllers(&snapshot);
    EXPECT_EQ(snapshot.controllers.size(), 64u);
    EXPECT_EQ(snapshot.controllers[63].id, 63u);
    EXPECT_EQ(snapshot.faults, (FaultList{{"q5_getNumberOfHBA", FaultKind::impossible, 4000000000}}));
}

TEST_F(Faulty, LibraryThatDoesNotOpenIsAFaultOfTheSnapshot) {
    for (const char* refused : {"q5_initialize", "q5_discover"}) {
        respondInTest = [&](const std::string& operation, void*, std::size_t) {
            return operation == refused ? 5 : 0;
        };
        Snapshot snapshot;
        EXPECT_EQ(openAdapters(&snapshot), OpenResult::failed);
        EXPECT_EQ(snapshot.faults, (FaultList{{refused, FaultKind::refused, 5}}));
    }
}

TEST(FaultText, DescribesTheFault) {
    EXPECT_EQ(faultText({"q5_x", FaultKind::refused, -3}), "q5_x failed with result -3");
    EXPECT_EQ(faultText({"q5_x", FaultKind::overrun, 88}), "q5_x wrote beyond its buffer of 88 bytes");
    EXPECT_EQ(faultText({"q5_x", FaultKind::impossible, 33}), "q5_x returned the impossible count 33");
    EXPECT_EQ(faultText({"q5_x", FaultKind::repeated, 2}), "q5_x listed ID 2 twice or out of order");
    EXPECT_EQ(faultText({"q5_x", FaultKind::foreign, 2}), "q5_x answered for ID 2 instead");
}
