// Shared by the listings of drives and of extents: their options and the query.
#pragma once

#include "adapter/phydrv.h"
#include "adapter/reply.h"

using DriveReply = Reply<PhyDrvInfo, kMaxDrives>;

// The arguments of a listing; drives count from 0.
struct ListingArgs {
    std::uint32_t controller = 0;
    std::uint32_t first = 0;
    std::uint32_t count = kMaxDrives;
    bool verbose = false;
};

// Parses -v, -p, -i and -c. -p sets the count to 1, which a later -c overrides. Returns Result::done,
// badValue or badId.
int parseListingArgs(int wordCount, char** words, ListingArgs* listing);

// Queries the drives. Returns false if there are none.
bool queryDrives(const ListingArgs& listing, DriveReply* reply);
