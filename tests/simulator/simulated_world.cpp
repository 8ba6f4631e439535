// Opens a session on a world file in a temporary directory.
#include "tests/simulator/simulated_world.h"

#include "simulator/file/world_json.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

SimulatedWorld::SimulatedWorld() {
    setenv("Q5SIM_WORLD", file.c_str(), 1);
    waitSeconds(0);
}

SimulatedWorld::~SimulatedWorld() {
    q5_finalize();
}

void SimulatedWorld::open(const std::string& name) {
    if (!name.empty())
        fs::copy_file(std::string(WORLDS) + "/" + name + ".json", file);
    ASSERT_EQ(initialize(), 0);
}

void SimulatedWorld::waitSeconds(long long seconds) {
    now += seconds;
    setenv("Q5SIM_NOW", std::to_string(now).c_str(), 1);
}

std::string SimulatedWorld::fileText() const {
    return readText(file);
}

std::string SimulatedWorld::stateText() const {
    q5sim::World world;
    q5sim::ValidationError error;
    EXPECT_TRUE(q5sim::worldFromJson(fileText(), world, error)) << error.reason;
    world.refusals.clear();
    world.olderRefusals = 0;
    for (q5sim::Controller& controller : world.controllers)
        controller.knownDrives.clear();
    return q5sim::worldToJson(world);
}

void SimulatedWorld::replaceInFile(const std::string& from, const std::string& to) {
    std::string text = fileText();
    const std::size_t at = text.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    writeText(file, text.replace(at, from.size(), to));
}

std::string readText(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

void writeText(const std::string& path, const std::string& text) {
    std::ofstream(path) << text;
}

int initialize() {
    ApiInitRecord record = {};
    record.signature = kApiSignature;
    record.mode = 1;
    record.time = 60;
    return q5_initialize(&record);
}

PhyDrvInfo driveInfo(std::uint32_t controller, std::uint32_t drive) {
    Reply<PhyDrvInfo, 1> reply = {};
    const PhyDrvQuery query = {drive, 1, kAllDrives, {}};
    EXPECT_EQ(q5_getPhyDrvInfo(hbaAddress(controller), 0, &query, &reply, sizeof reply), 0);
    EXPECT_EQ(reply.header.bytesUsed, 728u);
    return reply.record[0];
}

static std::string useText(const ExtentEntry& extent) {
    const std::string array = std::to_string(extent.arrayId);
    switch (extent.assignment) {
    case kExtentAssigned:
        return "array" + array;
    case kExtentGlobalSpare:
        return "spare";
    case kExtentDedicatedSpare:
        return "spare" + array;
    default:
        return "free";
    }
}

static std::string text(const ExtentEntry& extent) {
    return std::to_string(extent.start / kMb) + " " + useText(extent) + " " +
           std::to_string(extent.size / kMb);
}

std::string extentText(std::uint32_t drive, std::size_t index) {
    return text(driveInfo(0, drive).extent[index]);
}

std::string extentsText(std::uint32_t drive) {
    const PhyDrvInfo info = driveInfo(0, drive);
    std::string all;
    for (const ExtentEntry& extent : extents(info))
        all += (all.empty() ? "" : ", ") + text(extent);
    return all;
}

LogDrvInfo arrayInfo(std::uint32_t controller, std::uint32_t logDrvId) {
    Reply<LogDrvInfo, 1> reply = {};
    const LogDrvQuery query = {logDrvId, 1};
    EXPECT_EQ(q5_getLogDrvInfo(hbaAddress(controller), 0, &query, &reply, sizeof reply), 0);
    if (reply.header.bytesUsed != 272)
        reply.record[0].logDrvId = 0xFFFF;
    return reply.record[0];
}

std::string membersText(const LogDrvInfo& array) {
    std::ostringstream all;
    for (int i = 0; i < boundedMemberCount(array); i++)
        all << (i == 0 ? "" : " ") << int{array.memberIds[i]};
    return all.str();
}

std::vector<std::string> eventTexts(std::uint32_t controller, std::uint32_t count) {
    static Reply<HBAEvent, 51> reply;
    reply = {};
    EventQuery query = {-1, count};
    EXPECT_EQ(q5_getHBAEvents(hbaAddress(controller), 0, &query, &reply, 20872), 0);
    std::vector<std::string> texts;
    for (std::uint32_t i = 0; i < query.count; i++)
        texts.emplace_back(reply.record[i].description);
    return texts;
}

std::string newestEvent(std::uint32_t controller) {
    const std::vector<std::string> texts = eventTexts(controller, 1);
    return texts.empty() ? "" : texts.back();
}

CreateArrayRequest request(RaidLevel level, std::uint64_t capacity,
                           const std::vector<std::uint32_t>& drives) {
    CreateArrayRequest wanted = {};
    wanted.stripeSize = 64;
    wanted.constant4 = 1;
    wanted.constant91 = 1;
    wanted.capacity = capacity;
    std::strncpy(wanted.name, "test", sizeof wanted.name - 1);
    wanted.raidLevel = level;
    wanted.allocation = capacity == 0 ? kAllocateGiven : kAllocateByCapacity;
    wanted.memberCount = static_cast<std::uint8_t>(drives.size());
    wanted.parityCount = 2;
    wanted.subArrayCount = 2;
    wanted.sectorSize = 512;
    for (std::size_t i = 0; i < drives.size(); i++)
        wanted.member[i].driveId = drives[i];
    return wanted;
}

int create(const CreateArrayRequest& request) {
    return q5_addHBAArray(hbaAddress(0), 0, &request);
}
