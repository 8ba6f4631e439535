// The simulated adapters, except that drive 2 is refused when it is queried alone. It is still listed.
#define q5_getPhyDrvInfo simulatedPhyDrvInfo
#include "simulator/operations/drives.cpp"
#undef q5_getPhyDrvInfo

extern "C" int q5_getPhyDrvInfo(HbaAddress address, std::uint32_t reserved, const PhyDrvQuery* query,
                                void* reply, std::uint32_t size) {
    if (query->count == 1 && query->firstDriveId == 1)
        return 1;
    return simulatedPhyDrvInfo(address, reserved, query, reply, size);
}
