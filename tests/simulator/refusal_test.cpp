// Queries with an invalid address, buffer or selector: they are refused, and the buffer is zero up to
// its size and unchanged after it.
#include <cstring>
#include <functional>

#include "adapter/battery.h"
#include "adapter/enclosure.h"
#include "tests/simulator/simulated_world.h"

class Refusal : public SimulatedWorld {
protected:
    void SetUp() override { open("bench"); }
};

// A query with valid arguments except for address, reserved word, buffer and size.
struct QueryCase {
    const char* name;
    std::uint32_t size;
    std::function<int(HbaAddress, std::uint32_t, void*, std::uint32_t)> call;
};

template <typename Query, typename Buffer>
static QueryCase queryCase(const char* name, std::uint32_t size, Query query,
                           int (*operation)(HbaAddress, std::uint32_t, const Query*, Buffer*,
                                            std::uint32_t)) {
    return {name, size,
            [=](HbaAddress address, std::uint32_t reserved, void* buffer, std::uint32_t bufferSize) {
                return operation(address, reserved, &query, static_cast<Buffer*>(buffer), bufferSize);
            }};
}

static std::vector<QueryCase> queryCases() {
    return {
        queryCase("info", 432, ControllerQuery{0, 1, kGeneralInfo, {}}, q5_getControllerInfo),
        queryCase("version", 88, ControllerQuery{0, 1, kVersionInfo, {}}, q5_getControllerInfo),
        queryCase("settings", 88, ControllerQuery{0, 1, kGeneralInfo, {}}, q5_getControllerSettings),
        queryCase("battery", 112, BatteryQuery{}, q5_getBatteryInfo),
        queryCase("enclosures", 80, EnclosureQuery{0, 1}, q5_getEnclosureInfo),
        queryCase("drives", 64, PhyDrvQuery{0, 1, kAllDrives, {}}, q5_getPhyDrvInfo),
        queryCase("drive settings", 80, PhyDrvSelector{0, 1, 1, {}}, q5_getPhyDrvSettings),
        queryCase("patrol", 124, DriveSelector{0, 1}, q5_getHBAMediaPatrolProgress),
        queryCase("arrays", 64, LogDrvQuery{0, 128}, q5_getLogDrvInfo),
        queryCase("array settings", 180, LogDrvQuery{0, 128}, q5_getLogDrvSettings),
        {"buzzer", 1,
         [](HbaAddress address, std::uint32_t reserved, void* buffer, std::uint32_t size) {
             return q5_getBuzzerStatus(address, reserved, static_cast<std::uint8_t*>(buffer), size);
         }},
        {"events", 64,
         [](HbaAddress address, std::uint32_t reserved, void* buffer, std::uint32_t size) {
             EventQuery query = {-1, 5};
             return q5_getHBAEvents(address, reserved, &query, buffer, size);
         }},
        {"speed", 4,
         [](HbaAddress address, std::uint32_t reserved, void* buffer, std::uint32_t size) {
             return q5_getDataTransferSpeed(address, reserved, "TQ500-7200AS", "TQ3.02",
                                            static_cast<int*>(buffer), size);
         }},
    };
}

// Calls with this address, reserved word and size, and checks the buffer after the refusal.
static void expectRefusal(const QueryCase& one, HbaAddress address, std::uint32_t reserved,
                          std::uint32_t size) {
    alignas(16) std::uint8_t buffer[512];
    std::memset(buffer, 0xAA, sizeof buffer);
    EXPECT_NE(one.call(address, reserved, buffer, size), 0) << one.name;
    for (std::uint32_t i = 0; i < sizeof buffer; i++)
        ASSERT_EQ(buffer[i], i < size ? 0 : 0xAA) << one.name << " at " << i;
}

TEST_F(Refusal, ZeroesBufferAndKeepsWorld) {
    for (const QueryCase& one : queryCases()) {
        alignas(16) std::uint8_t buffer[512];
        EXPECT_EQ(one.call(hbaAddress(0), 0, buffer, one.size), 0) << one.name;
        const std::string before = stateText();
        expectRefusal(one, hbaAddress(1), 0, one.size);
        expectRefusal(one, hbaAddress(65535), 0, one.size);
        expectRefusal(one, {0, {0, 0, 0, 0, 0, 1}}, 0, one.size);
        expectRefusal(one, hbaAddress(0), 1, one.size);
        expectRefusal(one, hbaAddress(0), 0, one.size - 1);
        expectRefusal(one, hbaAddress(0), 0, 0);
        EXPECT_NE(one.call(hbaAddress(0), 0, nullptr, one.size), 0) << one.name;
        EXPECT_EQ(stateText(), before);
    }
}

TEST_F(Refusal, ZeroesBufferWhenSessionIsClosed) {
    EXPECT_EQ(q5_finalize(), 0);
    for (const QueryCase& one : queryCases())
        expectRefusal(one, hbaAddress(0), 0, one.size);
}

TEST_F(Refusal, RejectsMissingSelectors) {
    std::uint8_t buffer[512];
    EXPECT_NE(q5_getControllerInfo(hbaAddress(0), 0, nullptr, buffer, 432), 0);
    EXPECT_NE(q5_getControllerInfo(hbaAddress(0), 0, nullptr, buffer, 88), 0);
    EXPECT_NE(q5_getPhyDrvInfo(hbaAddress(0), 0, nullptr, buffer, 512), 0);
    EXPECT_NE(q5_getPhyDrvSettings(hbaAddress(0), 0, nullptr, buffer, 80), 0);
    EXPECT_NE(q5_setPhyDrvSettings(hbaAddress(0), 0, nullptr, buffer, 80), 0);
    EXPECT_NE(q5_getLogDrvInfo(hbaAddress(0), 0, nullptr, buffer, 512), 0);
    EXPECT_NE(q5_getLogDrvSettings(hbaAddress(0), 0, nullptr, buffer, 180), 0);
    EXPECT_NE(q5_setLogDrvSettings(hbaAddress(0), 0, nullptr, buffer, 180), 0);
    EXPECT_NE(q5_getEnclosureInfo(hbaAddress(0), 0, nullptr, buffer, 80), 0);
    EXPECT_NE(q5_getHBAEvents(hbaAddress(0), 0, nullptr, buffer, 512), 0);
    EXPECT_NE(q5_getDriverInfo(hbaAddress(0), 0, nullptr), 0);
    EXPECT_NE(q5_getDiscoverPath(hbaAddress(0), nullptr, 656), 0);
    EXPECT_NE(q5_getAryLostDisk(hbaAddress(0), 0, 0, nullptr), 0);
    EXPECT_NE(q5_getPhyDrvLocateStatus(hbaAddress(0), 0, 0, nullptr), 0);
    EXPECT_NE(q5_removeHBADiskMDD(hbaAddress(0), 0, nullptr), 0);
    EXPECT_NE(q5_startHBAMediaPatrol(hbaAddress(0), 0, nullptr), 0);
    EXPECT_NE(q5_spareHBAExtent(hbaAddress(0), 0, nullptr), 0);
    EXPECT_NE(q5_addHBAExtentToArray(hbaAddress(0), 0, nullptr), 0);
    EXPECT_NE(q5_freeHBAExtent(hbaAddress(0), 0, nullptr), 0);
    EXPECT_NE(q5_splitHBAExtent(hbaAddress(0), 0, nullptr, 1), 0);
    EXPECT_NE(q5_delDiskArray(hbaAddress(0), 0, nullptr, 8), 0);
    EXPECT_NE(q5_startLogDrvInit(hbaAddress(0), 0, nullptr, 524), 0);
    EXPECT_NE(q5_startRedundancyCheck(hbaAddress(0), 0, nullptr), 0);
    EXPECT_NE(q5_PauseMigration(hbaAddress(0), 0, nullptr), 0);
}

TEST_F(Refusal, RejectsQueriesThatContradictTheAddress) {
    ControllerInfo info = {};
    const ControllerQuery other = {1, 1, kGeneralInfo, {}}, two = {0, 2, kGeneralInfo, {}},
                          third = {0, 1, 1, {}};
    EXPECT_NE(q5_getControllerInfo(hbaAddress(0), 0, &other, &info, sizeof info), 0);
    EXPECT_NE(q5_getControllerInfo(hbaAddress(0), 0, &two, &info, sizeof info), 0);
    EXPECT_NE(q5_getControllerInfo(hbaAddress(0), 0, &third, &info, sizeof info), 0);
    EXPECT_EQ(info.diskCount, 0);
}
