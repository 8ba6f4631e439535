// A fake adapter library: only the operations that startup and the controller listing need, with fixed
// replies, written from the byte offsets of the records and without the program's headers. It logs the calls
// that start and end a session to standard error, and keeps the file named by $FAKE_LIB_DEVICE open, as a
// real library does with its driver's device.
#include <fcntl.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

struct Address {
    std::uint16_t controller;
    std::uint8_t rest[6];
};

template <typename Number>
static void put(void* record, std::size_t offset, Number number) {
    std::memcpy(static_cast<char*>(record) + offset, &number, sizeof number);
}

template <typename Number>
static Number get(const void* record, std::size_t offset) {
    Number number;
    std::memcpy(&number, static_cast<const char*>(record) + offset, sizeof number);
    return number;
}

static void putVersion(void* record, std::size_t offset, std::int32_t first) {
    for (std::int32_t part = 0; part < 4; ++part)
        put(record, offset + 4 * static_cast<std::size_t>(part), first + part);
}

extern "C" int q5_initialize(const void* record) {
    if (const char* device = std::getenv("FAKE_LIB_DEVICE"))
        static_cast<void>(open(device, O_RDWR));
    std::fprintf(stderr, "initialize %x %d %u\n", get<std::uint32_t>(record, 16),
                 get<std::uint8_t>(record, 20), get<std::uint32_t>(record, 24));
    return INITIALIZE;
}

extern "C" int q5_discover(int mode) {
    std::fprintf(stderr, "discover %d\n", mode);
    return DISCOVER;
}

extern "C" int q5_getNumberOfHBA(std::uint32_t* count) {
    *count = CONTROLLERS;
    return 0;
}

extern "C" int q5_finalize() {
    std::fprintf(stderr, "finalize\n");
    return 0;
}

extern "C" int q5_getControllerInfo(Address, std::uint32_t, const void* query, void* reply, std::uint32_t) {
    if (get<std::uint16_t>(query, 8) == 2) {
        putVersion(reply, 72, 50);
        return 0;
    }
    putVersion(reply, 300, 10);
    const std::uint8_t rates[] = {21, 22, 23, 0, 25, 26, 1, 0, 0, 30, 0, 32, 0, 1};
    std::memcpy(static_cast<char*>(reply) + 316, rates, sizeof rates);
    put<std::int32_t>(reply, 332, 512);
    put<std::uint16_t>(reply, 338, 3);
    put<std::uint16_t>(reply, 348, 7);
    put<std::uint16_t>(reply, 376, 9);
    put<std::uint8_t>(reply, 378, 16);
    return 0;
}

extern "C" int q5_getControllerSettings(Address, std::uint32_t, const void*, void* settings, std::uint32_t) {
    put<std::uint8_t>(settings, 82, 1);
    return 0;
}

extern "C" int q5_getDriverInfo(Address, std::uint32_t, void* info) {
    putVersion(info, 0, 90);
    return 0;
}

extern "C" int q5_getDiscoverPath(Address, void* info, std::uint32_t) {
    put<std::int32_t>(info, 464, 11);
    put<std::int32_t>(info, 468, 12);
    put<std::uint32_t>(info, 472, 0xFFFFFFFF);
    put<std::int32_t>(info, 476, -2);
    put<std::uint8_t>(info, 480, 200);
    for (std::uint32_t address = 0; address < 5; ++address)
        put<std::uint32_t>(info, 484 + 4 * address, 0xA0000000 + address);
    return 0;
}

extern "C" int q5_getBatteryInfo(Address, std::uint32_t, const void*, void* info, std::uint32_t) {
    put<std::uint8_t>(info, 110, 0x80);
    return 0;
}

extern "C" int q5_getEnclosureInfo(Address, std::uint32_t, const void* query, void* reply, std::uint32_t) {
    const std::uint16_t id = get<std::uint16_t>(query, 0);
    put<std::uint8_t>(reply, 78, id == 0 || id == 15 ? 1 : 0);
    return 0;
}
