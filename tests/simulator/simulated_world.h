// A session with a copy of a world and a clock that only waitSeconds advances.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "adapter/activity.h"
#include "adapter/controller.h"
#include "adapter/event.h"
#include "adapter/mediapatrol.h"
#include "adapter/reply.h"
#include "adapter/session.h"
#include "tests/temp_dir.h"

inline constexpr std::uint64_t kMb = 2048; // sectors
inline constexpr long long kStart = 1000000000;

class SimulatedWorld : public testing::Test {
protected:
    const TempDir temporary;
    const std::string directory = temporary.path(); // of the world file, one per test
    std::string file = temporary.path("world.json");
    long long now = kStart;

    SimulatedWorld();
    ~SimulatedWorld() override;

    // Copies tests/simulator/worlds/<name>.json into place and opens it; the empty name opens the
    // built-in world.
    void open(const std::string& name);
    void waitSeconds(long long seconds);
    // The contents of the file.
    std::string fileText() const;
    // The world in the file without the list of refusals and the simulator's own notes.
    std::string stateText() const;
    void replaceInFile(const std::string& from, const std::string& to);
};

int initialize();
std::string readText(const std::string& path);
void writeText(const std::string& path, const std::string& text);

PhyDrvInfo driveInfo(std::uint32_t controller, std::uint32_t drive);
// An extent as "0 array0 400": start in MB, use, size in MB.
std::string extentText(std::uint32_t drive, std::size_t index);
// All extents of a drive of controller 0, joined with ", ".
std::string extentsText(std::uint32_t drive);

// logDrvId 0xFFFF: there is none.
LogDrvInfo arrayInfo(std::uint32_t controller, std::uint32_t logDrvId);
std::string membersText(const LogDrvInfo& array);
// The newest event's text; empty when there is none.
std::string newestEvent(std::uint32_t controller = 0);
std::vector<std::string> eventTexts(std::uint32_t controller, std::uint32_t count);

// A request for an array on the first free space of drives; capacity in MB.
CreateArrayRequest request(RaidLevel level, std::uint64_t capacity, const std::vector<std::uint32_t>& drives);
int create(const CreateArrayRequest& request);
