// A session with fault injection on controller 0 and a check of all invariants after each step.
#pragma once

#include <functional>

#include "simulator/engine/fault_injection.h"
#include "simulator/store/world_store.h"
#include "simulator/world/array_rules.h"
#include "simulator/world/bad_sectors.h"
#include "simulator/world/invariants.h"
#include "tests/simulator/simulated_world.h"

class FaultedWorld : public SimulatedWorld {
protected:
    // The reason why it is refused; empty: it was injected.
    static std::string inject(const std::function<q5sim::Reason(q5sim::Controller&, std::int64_t)>& fault) {
        std::string reason;
        q5sim::changeWorld([&](q5sim::World& world, std::int64_t at) {
            reason = fault(world.controllers[0], at);
            return reason.empty() ? 0 : 1;
        });
        EXPECT_EQ(q5sim::findViolations(*q5sim::currentWorld()), std::vector<std::string>());
        return reason;
    }
    static std::string fail(std::uint32_t drive) {
        return inject([=](q5sim::Controller& c, std::int64_t) { return q5sim::failDrive(c, drive); });
    }
    static std::string pull(std::uint32_t drive) {
        return inject([=](q5sim::Controller& c, std::int64_t at) { return q5sim::pullDrive(c, drive, at); });
    }
    static std::string insert(std::uint32_t drive, q5sim::NewDrive kind = q5sim::NewDrive::same) {
        return inject(
            [=](q5sim::Controller& c, std::int64_t at) { return q5sim::insertDrive(c, drive, kind, at); });
    }
    // Bad sectors from a sector on.
    static void damage(std::uint32_t drive, std::uint64_t start, std::uint64_t count) {
        inject([=](q5sim::Controller& c, std::int64_t) {
            q5sim::addBadSectors(*q5sim::findDrive(c, drive), start, count);
            return q5sim::Reason();
        });
    }
    static const q5sim::Controller& controller() { return q5sim::currentWorld()->controllers[0]; }
    static std::uint64_t badSectors(std::uint32_t drive) {
        return q5sim::countBadSectors(*q5sim::findDrive(controller(), drive));
    }
    static int rebuild(std::uint32_t drive, std::uint32_t extent) {
        const RebuildEntry entry = {0, drive, extent, {}};
        const LogDrvInfo array = arrayInfo(0, 0);
        return q5_startHBARebuildExtent(hbaAddress(0), 0, 1, &entry, &array);
    }
    // The last texts, as one text.
    static std::string lastEvents(std::uint32_t count) {
        std::string all;
        for (const std::string& text : eventTexts(0, count))
            all += text + "\n";
        return all;
    }
};

// A synchronized RAID5 on drives 0 to 2 with members of 400 MB: a job takes 50 seconds.
class FaultedArray : public FaultedWorld {
protected:
    void SetUp() override {
        open("bench");
        ASSERT_EQ(create(request(kRaid5, 800, {0, 1, 2})), 0);
        waitSeconds(50);
        ASSERT_EQ(arrayInfo(0, 0).activityStatus, 0);
    }
};
