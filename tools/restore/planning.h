// A plan under construction. Used by the sources of the plan only.
#pragma once

#include <set>

#include "tools/restore/layout.h"
#include "tools/restore/plan.h"

inline constexpr std::uint64_t kSectorsPerMb = 2048; // extents are split at whole megabytes

struct Planning {
    const Controller& saved;
    const Controller& now;
    const DriveMap& drives;
    Layouts layouts;                            // as the steps so far leave them
    std::map<std::uint16_t, std::uint32_t> ids; // logical drives here, by the saved array ID
    std::set<std::uint32_t> takenIds;           // of logical drives here, those to be created included
    std::set<std::uint32_t> unsettled;          // those here that an obstacle is about; their settings stay
    std::set<std::uint32_t> refused;            // saved drives that cannot be used; reported once
    std::set<std::uint32_t> inPlace; // saved drives whose logical drives are on the drives of the map
    Plan plan;
    std::optional<Step> lastStep = std::nullopt; // enables the automatic rebuild
};

// A place on a saved drive, and the present drive for it. The place of a lost member may not be known.
struct MemberPlace {
    std::uint32_t savedDrive = 0, drive = 0;
    std::uint64_t start = 0, size = 0;
    bool isKnown() const { return size != 0; }
};
using MemberPlaces = std::vector<MemberPlace>; // of a logical drive, in the order of its members

// The present drive for a saved one; nullptr: missing or left out.
const Drive* presentDrive(const Planning& planning, std::uint32_t savedDrive);

// Whether the drive map leaves the drive out.
bool isLeftOut(const Planning& planning, std::uint32_t savedDrive);

// Whether both drives have the same serial.
bool hasSerialOf(const Drive& saved, const Drive& drive);

// Whether the present drive has the saved serial, or is mapped.
bool hasExpectedSerial(const Planning& planning, std::uint32_t savedDrive);

// The number that a saved drive has now, if it has changed. Its serial shows it, unless another drive has the
// same one.
std::optional<std::uint32_t> movedTo(const Planning& planning, std::uint32_t savedDrive);

// What to do about such a drive, or about a map that the serials contradict; empty: it is where it was, is
// mapped already, or is not here.
std::string movedText(const Planning& planning, std::uint32_t savedDrive);

// Says that the map puts such a drive in the place of another one; empty: it does not.
std::string misplacedText(const Planning& planning, std::uint32_t savedDrive);

// Functions that begin with "require" return whether the requirement is met, and add an obstacle if not.

// The drive is present, gives access, and has its serial unless it is mapped. No obstacle is added if it is
// left out.
bool requireUsable(Planning* planning, std::uint32_t savedDrive);

// It has the saved serial, or is mapped.
bool requireExpectedSerial(Planning* planning, std::uint32_t savedDrive);

// It is not in another slot.
bool requireWhereSaved(Planning* planning, std::uint32_t savedDrive);
bool requireMembersWhereSaved(Planning* planning, const MemberPlaces& places);
void requireMapWhereSaved(Planning* planning);

std::string driveName(std::uint32_t number);                              // "drive 2"
std::string arrayName(const LogicalDrive& drive, std::uint32_t logDrvId); // "logical drive 0 Archive"
// The same with its level, size and places.
std::string describe(const Controller& controller, const LogicalDrive& drive);

// Notes which logical drive here is the saved one.
void noteId(Planning* planning, const LogicalDrive& saved, std::uint32_t id);

void addStep(Planning* planning, StepKind kind, const std::string& text,
             const std::vector<std::string>& words);

// Splits an extent at the sector, which must be at a whole megabyte; otherwise adds an obstacle and returns
// false.
bool splitAt(Planning* planning, std::uint32_t drive, std::uint64_t sector);

// plan_settings.cpp
void planController(Planning* planning);
void planDrives(Planning* planning);
void planArraySettings(Planning* planning);

// plan_arrays.cpp
void findMembersInPlace(Planning* planning);
void planArrays(Planning* planning);

// plan_creation.cpp
void planCreation(Planning* planning, const LogicalDrive& saved, const MemberPlaces& places);

// plan_rebuilds.cpp
// The logical drive that is being rebuilt onto the extent; nullptr: none.
const LogicalDrive* rebuiltArray(const Controller& controller, const Drive& drive, const ExtentEntry& extent);
std::vector<std::uint32_t> rebuildTargets(const Controller& controller, const LogicalDrive& array);
void listRebuilds(Planning* planning);

// plan_spares.cpp
void planSpares(Planning* planning);
