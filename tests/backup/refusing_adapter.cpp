// The simulated adapters, except that drive 2 is refused when it is queried alone. It is still listed.
#include "adapter/phydrv.h"

// The operation of the simulated adapters; see CMakeLists.txt.
extern "C" int simulatedPhyDrvInfo(HbaAddress address, std::uint32_t reserved, const PhyDrvQuery* query,
                                   void* reply, std::uint32_t size);

int q5_getPhyDrvInfo(HbaAddress address, std::uint32_t reserved, const PhyDrvQuery* query, void* reply,
                     std::uint32_t size) {
    if (query->count == 1 && query->firstDriveId == 1)
        return 1;
    return simulatedPhyDrvInfo(address, reserved, query, reply, size);
}
