// The listing operations of controllers with the largest configuration, or with fewer drives if BENCH_DRIVES
// and BENCH_LOGDRVS are set. All records are prepared in advance: a reply is one copy.
#include <cstdlib>
#include <cstring>

#include "adapter/controller.h"
#include "adapter/session.h"
#include "tests/bench/samples.h"

static PhyDrvInfo drives[kMaxDrives];
static PhyDrvSettings driveSettings[kMaxDrives];
static LogDrvInfo logDrvs[kMaxLogDrvs];
static LogDrvSettings logDrvSettings[kMaxLogDrvs];
static HBAEvent events[kSampleEvents];
static std::uint32_t driveCount = kMaxDrives, logDrvCount = kMaxLogDrvs;

static void readCount(const char* variable, std::uint32_t* count) {
    const char* text = std::getenv(variable);
    const long number = text != nullptr ? std::strtol(text, nullptr, 10) : -1;
    if (number >= 0 && number < static_cast<long>(*count))
        *count = static_cast<std::uint32_t>(number);
}

int q5_initialize(const ApiInitRecord*) {
    for (int i = 0; i < static_cast<int>(kMaxDrives); ++i) {
        drives[i] = sampleDrive(i);
        driveSettings[i] = sampleDriveSettings(i);
    }
    for (int i = 0; i < static_cast<int>(kMaxLogDrvs); ++i) {
        logDrvs[i] = sampleLogDrv(i);
        logDrvSettings[i] = sampleLogDrvSettings(i);
    }
    for (int i = 0; i < kSampleEvents; ++i)
        events[i] = sampleEvent(i);
    readCount("BENCH_DRIVES", &driveCount);
    readCount("BENCH_LOGDRVS", &logDrvCount);
    return 0;
}

// Copies the requested records, as many as exist and fit into the buffer.
template <typename Record>
static int list(void* reply, std::uint32_t size, const Record* record, std::uint32_t total,
                std::uint32_t first, std::uint32_t requested) {
    std::uint32_t count = first < total ? total - first : 0;
    count = requested < count ? requested : count;
    const auto capacity = static_cast<std::uint32_t>((size - sizeof(ReplyHeader)) / sizeof(Record));
    count = capacity < count ? capacity : count;
    auto* header = static_cast<ReplyHeader*>(reply);
    header->bytesUsed = static_cast<std::uint32_t>(sizeof *header + count * sizeof(Record));
    std::memcpy(header + 1, record + first, count * sizeof(Record));
    return 0;
}

int q5_getControllerInfo(HbaAddress, std::uint32_t, const ControllerQuery* query, void* reply,
                         std::uint32_t) {
    if (query->infoClass == kGeneralInfo)
        static_cast<ControllerInfo*>(reply)->diskCount = static_cast<std::uint16_t>(driveCount);
    return 0;
}

int q5_getPhyDrvInfo(HbaAddress, std::uint32_t, const PhyDrvQuery* query, void* reply, std::uint32_t size) {
    return list(reply, size, drives, driveCount, query->firstDriveId, query->count);
}

int q5_getPhyDrvSettings(HbaAddress, std::uint32_t, const PhyDrvSelector* selector, void* reply,
                         std::uint32_t size) {
    return list(reply, size, driveSettings, driveCount, selector->driveId, selector->count);
}

int q5_getLogDrvInfo(HbaAddress, std::uint32_t, const LogDrvQuery* query, void* reply, std::uint32_t size) {
    return list(reply, size, logDrvs, logDrvCount, query->logDrvId, query->count);
}

int q5_getLogDrvSettings(HbaAddress, std::uint32_t, const LogDrvQuery* query, void* reply,
                         std::uint32_t size) {
    return list(reply, size, logDrvSettings, logDrvCount, query->logDrvId, query->count);
}

int q5_getHBAEvents(HbaAddress, std::uint32_t, EventQuery* query, void* reply, std::uint32_t) {
    query->count = query->count < kSampleEvents ? query->count : kSampleEvents;
    std::memcpy(static_cast<ReplyHeader*>(reply) + 1, events, query->count * sizeof(HBAEvent));
    return 0;
}
