// The adapters of the largest configuration: 16 controllers, or as many as BENCH_CONTROLLERS says, with 64
// drives and 128 logical drives each. Controllers are read one after the other, and drives in order. If
// BENCH_CALLS names a file, the number of calls is written to it at the end.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "adapter/controller.h"
#include "adapter/reply.h"
#include "tests/bench/samples.h"
#include "tests/stub_adapter.h"

static constexpr std::uint16_t kDrivesListed = 64;
static constexpr int kArrayDrives = 2; // of each logical drive

static long calls;
static std::uint16_t nextDrive, nextSettings; // of the controller that is being read

static std::uint32_t controllerCount() {
    const char* text = std::getenv("BENCH_CONTROLLERS");
    return text != nullptr ? static_cast<std::uint32_t>(std::strtoul(text, nullptr, 10)) : 16;
}

template <typename Record>
static void setCount(Record* reply, std::size_t count) {
    reply->header.bytesUsed =
        static_cast<std::uint32_t>(sizeof(ReplyHeader) + count * sizeof(reply->record[0]));
}

static void fillDrives(void* buffer) {
    auto* reply = static_cast<Reply<PhyDrvInfo, kMaxDrives>*>(buffer);
    std::size_t count = 0;
    for (; count < kMaxDrives && nextDrive < kDrivesListed; ++count) {
        reply->record[count] = sampleDrive(nextDrive);
        reply->record[count].driveId = nextDrive++;
    }
    setCount(reply, count);
}

static void fillLogicalDrives(void* buffer) {
    auto* reply = static_cast<Reply<LogDrvInfo, kMaxLogDrvs>*>(buffer);
    for (std::uint32_t i = 0; i < kMaxLogDrvs; ++i) {
        LogDrvInfo& drive = reply->record[i];
        drive = sampleLogDrv(static_cast<int>(i));
        drive.diskCount = kArrayDrives;
        drive.functionalStatus = kOnline;
    }
    setCount(reply, kMaxLogDrvs);
}

static void fillDriveSettings(void* buffer) {
    auto* reply = static_cast<Reply<PhyDrvSettings, 1>*>(buffer);
    reply->record[0] = sampleDriveSettings(nextSettings);
    reply->record[0].pdId = nextSettings++;
    setCount(reply, 1);
}

static void fillController(void* buffer, std::size_t size) {
    nextDrive = nextSettings = 0;
    if (size == sizeof(ControllerInfo))
        static_cast<ControllerInfo*>(buffer)->diskCount = kDrivesListed;
}

static void writeCalls() {
    const char* path = std::getenv("BENCH_CALLS");
    std::FILE* file = path != nullptr ? std::fopen(path, "w") : nullptr;
    if (file == nullptr)
        return;
    std::fprintf(file, "%ld\n", calls);
    std::fclose(file);
}

int respond(const char* operation, void* reply, std::size_t size) {
    ++calls;
    if (std::strcmp(operation, "q5_getControllerInfo") == 0)
        fillController(reply, size);
    else if (std::strcmp(operation, "q5_finalize") == 0)
        writeCalls();
    return 0;
}

int respondWithList(const char* operation, void* reply, std::size_t) {
    ++calls;
    if (std::strcmp(operation, "q5_getPhyDrvInfo") == 0)
        fillDrives(reply);
    else if (std::strcmp(operation, "q5_getPhyDrvSettings") == 0)
        fillDriveSettings(reply);
    else if (std::strcmp(operation, "q5_getLogDrvInfo") == 0)
        fillLogicalDrives(reply);
    return 0;
}

int respondWithCount(const char*, std::uint32_t* count) {
    ++calls;
    *count = controllerCount();
    return 0;
}

int respondWithEvents(const char*, EventQuery*, void*, std::size_t) {
    return 1;
}

void recordDriveModel(const char*, const char*) {}
