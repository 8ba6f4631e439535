// Every operation of the adapters' library, callable with arguments taken from a fuzzing input. Each record
// is in a memory block of exactly its size, so that the sanitizer detects overruns.
#pragma once

#include <cstdlib>
#include <tuple>
#include <type_traits>
#include <vector>

#include "adapter/activity.h"
#include "adapter/battery.h"
#include "adapter/controller.h"
#include "adapter/creation.h"
#include "adapter/enclosure.h"
#include "adapter/event.h"
#include "adapter/extent.h"
#include "adapter/logdrv.h"
#include "adapter/mediapatrol.h"
#include "adapter/phydrv.h"
#include "tests/fuzz/bytes.h"

// The arguments of one call.
struct Arguments {
    Bytes* bytes;
    std::vector<std::vector<std::uint8_t>> blocks; // the memory that its pointers refer to
    std::uint32_t size = 0;                        // of the most recent reply or record
};

inline constexpr std::size_t kMaxEntries = 255; // of a rebuild, with an 8-bit count

// The size of a record passed by pointer. Replies and lists of variable length get a random size.
template <typename Record>
std::size_t recordSize(Arguments* arguments) {
    if constexpr (std::is_void_v<Record>)
        return takeValue<std::uint16_t>(arguments->bytes) % 8192;
    else if constexpr (std::is_same_v<std::remove_const_t<Record>, RebuildEntry>)
        return kMaxEntries * sizeof(RebuildEntry);
    else
        return sizeof(Record);
}

template <typename Argument>
struct FuzzArgument {
    static Argument take(Arguments* arguments) { return takeValue<Argument>(arguments->bytes); }
};

template <typename Record>
struct FuzzArgument<Record*> {
    static Record* take(Arguments* arguments) {
        std::vector<std::uint8_t> block(recordSize<Record>(arguments));
        takeBytes(arguments->bytes, block.data(), block.size());
        arguments->size = static_cast<std::uint32_t>(block.size());
        arguments->blocks.push_back(std::move(block));
        return reinterpret_cast<Record*>(arguments->blocks.back().data());
    }
};

// Texts are short and terminated by a NUL.
template <>
struct FuzzArgument<const char*> {
    static const char* take(Arguments* arguments) {
        std::vector<std::uint8_t> block(takeValue<std::uint8_t>(arguments->bytes) % 64 + 1);
        takeBytes(arguments->bytes, block.data(), block.size() - 1);
        arguments->blocks.push_back(std::move(block));
        return reinterpret_cast<const char*>(arguments->blocks.back().data());
    }
};

// The actual size of the preceding record, if there is one.
template <>
struct FuzzArgument<std::uint32_t> {
    static std::uint32_t take(Arguments* arguments) {
        const auto value = takeValue<std::uint32_t>(arguments->bytes);
        return arguments->size != 0 ? arguments->size : value;
    }
};

// One of three controllers, the last of which does not exist, or rarely any other address.
template <>
struct FuzzArgument<HbaAddress> {
    static HbaAddress take(Arguments* arguments) {
        const auto choice = takeValue<std::uint8_t>(arguments->bytes);
        return choice < 250 ? hbaAddress(choice % 3) : takeValue<HbaAddress>(arguments->bytes);
    }
};

template <auto operation>
struct Call;
template <typename... Rest, int (*operation)(HbaAddress, std::uint32_t, Rest...)>
struct Call<operation> {
    static void run(Bytes* bytes) {
        Arguments arguments = {bytes, {}, 0};
        const HbaAddress address = FuzzArgument<HbaAddress>::take(&arguments);
        const std::tuple<Rest...> rest = {
            FuzzArgument<Rest>::take(&arguments)...}; // braces evaluate from left to right
        std::apply([&](Rest... each) { operation(address, 0, each...); }, rest);
    }
};
template <int (*operation)(HbaAddress, DiscoverPathInfo*, std::uint32_t)>
struct Call<operation> {
    static void run(Bytes* bytes) {
        DiscoverPathInfo info = {};
        operation(takeValue<HbaAddress>(bytes), &info, sizeof info);
    }
};

inline void (*const operations[])(Bytes*) = {
    Call<q5_getControllerInfo>::run,
    Call<q5_getPhyDrvInfo>::run,
    Call<q5_getPhyDrvSettings>::run,
    Call<q5_getLogDrvInfo>::run,
    Call<q5_getControllerSettings>::run,
    Call<q5_setControllerSettings>::run,
    Call<q5_getDriverInfo>::run,
    Call<q5_getDiscoverPath>::run,
    Call<q5_getBatteryInfo>::run,
    Call<q5_getBuzzerStatus>::run,
    Call<q5_turnOnBuzzer>::run,
    Call<q5_turnOffBuzzer>::run,
    Call<q5_getEnclosureInfo>::run,
    Call<q5_getEnclosureStatus>::run,
    Call<q5_getHBAEvents>::run,
    Call<q5_setPhyDrvSettings>::run,
    Call<q5_getPhyDrvLocateStatus>::run,
    Call<q5_locatePhyDrv>::run,
    Call<q5_stopLocatePhyDrv>::run,
    Call<q5_removeHBADiskMDD>::run,
    Call<q5_getDataTransferSpeed>::run,
    Call<q5_setDataTransferSpeed>::run,
    Call<q5_spareHBAExtent>::run,
    Call<q5_addHBAExtentToArray>::run,
    Call<q5_freeHBAExtent>::run,
    Call<q5_deleteHBAExtent>::run,
    Call<q5_splitHBAExtent>::run,
    Call<q5_getHBAMediaPatrolProgress>::run,
    Call<q5_startHBAMediaPatrol>::run,
    Call<q5_stopHBAMediaPatrol>::run,
    Call<q5_pauseHBAMediaPatrol>::run,
    Call<q5_resumeHBAMediaPatrol>::run,
    Call<q5_getLogDrvSettings>::run,
    Call<q5_setLogDrvSettings>::run,
    Call<q5_getAryLostDisk>::run,
    Call<q5_delDiskArray>::run,
    Call<q5_locateLogDrv>::run,
    Call<q5_stopLocateLogDrv>::run,
    Call<q5_addHBAArray>::run,
    Call<q5_activateLogDrv>::run,
    Call<q5_getLogDrvInitProgress>::run,
    Call<q5_startLogDrvInit>::run,
    Call<q5_pauseLogDrvInit>::run,
    Call<q5_resumeLogDrvInit>::run,
    Call<q5_stopLogDrvInit>::run,
    Call<q5_getLogDrvSynchProgress>::run,
    Call<q5_getRedundancyCheckProgress>::run,
    Call<q5_startRedundancyCheck>::run,
    Call<q5_pauseRedundancyCheck>::run,
    Call<q5_resumeRedundancyCheck>::run,
    Call<q5_stopRedundancyCheck>::run,
    Call<q5_getMigrationProgress>::run,
    Call<q5_migrateHBAArray>::run,
    Call<q5_PauseMigration>::run,
    Call<q5_ResumeMigration>::run,
    Call<q5_getRebuildProgress>::run,
    Call<q5_startHBARebuildExtent>::run,
    Call<q5_pauseRebuild>::run,
    Call<q5_resumeRebuild>::run,
    Call<q5_restartRebuild>::run,
    Call<q5_stopRebuild>::run,
};
