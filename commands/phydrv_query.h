// What the listings of drives and of their extents share: their options and the adapter's answer.
#pragma once

#include "adapter/phydrv.h"
#include "adapter/reply.h"

using DriveReply = Reply<PhyDrvInfo, kMaxDrives>;

// What the words of a listing ask for; drives count from 0.
struct DriveListing {
    std::uint32_t controller = 0;
    std::uint32_t first = 0;
    std::uint32_t count = kMaxDrives;
    bool verbose = false;
};

// Reads -v, -p, -i and -c. -p and -c act in the order they stand: -p asks for a single drive, a -c
// after it for more. Result::done, badValue or badId.
int readDriveListing(int wordCount, char** words, DriveListing* listing);

// Asks for the drives; false when there is none.
bool findDrives(const DriveListing& listing, DriveReply* reply);
