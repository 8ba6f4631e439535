// The complete state of all adapters, as plain records. The adapters' own records are kept whole, as
// received, next to the numbers that users see: drives and members count from 1.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "adapter/activity.h"
#include "adapter/battery.h"
#include "adapter/controller.h"
#include "adapter/enclosure.h"
#include "adapter/logdrv.h"
#include "adapter/mediapatrol.h"
#include "adapter/phydrv.h"

inline constexpr std::uint32_t kMaxSnapshotControllers = 64;
inline constexpr std::size_t kMaxSnapshotDrives = 64; // of one controller

enum class FaultKind : std::uint8_t {
    refused,    // the operation failed; value is its result
    overrun,    // the adapter wrote beyond the buffer; value is the buffer's size
    impossible, // a count is beyond what the record or the buffer can hold; value is the count
    repeated,   // an object was listed twice, or out of order; value is its ID
    foreign,    // the reply is about another object; value is that one's ID
};

// What went wrong in one call. It is recorded with the object that the call was about.
struct Fault {
    std::string operation;
    FaultKind kind = FaultKind::refused;
    std::int64_t value = 0;
    bool operator==(const Fault&) const = default;
};
using Faults = std::vector<Fault>;

// A part that could not be read is empty, and a fault says why.
struct Drive {
    std::uint32_t number = 0; // from 1
    PhyDrvInfo info = {};
    std::optional<PhyDrvSettings> settings;
    std::optional<MediaPatrolProgress> patrol;
    std::optional<std::uint8_t> locate;   // non-zero: the locate light is on
    std::optional<std::int32_t> speed3Gb; // the 3 Gb/s setting
    Faults faults;
};

struct Enclosure {
    std::uint32_t id = 0; // from 0
    EnclosureEntry entry = {};
    std::optional<EnclosureStatus> status;
    Faults faults;
};

// A member of a logical drive. Serial, channel and enclosure are those of the drive that the controller
// lists under this number now; a lost member's drive may be missing, or be another one by now.
struct Member {
    std::uint32_t number = 0; // drive, from 1
    bool lost = false;
    bool named = false;  // in the logical drive's member list; a lost one may have been removed from it
    bool listed = false; // the controller lists a drive with this number
    std::string serial;
    std::uint16_t channel = 0;
    std::uint16_t enclosureId = kNoEnclosureId;
};

struct Activity {
    ActivityBit kind = kAnyActivity;
    std::uint8_t state = 0; // kActivityPaused, or any other value while it runs
    std::uint16_t percent = 0;
};

struct LogicalDrive {
    LogDrvInfo info = {};
    std::optional<LogDrvSettings> settings;
    std::optional<std::uint32_t> lostMask; // bit n: the member with the adapter's drive ID n is lost
    std::vector<Member> members;
    std::vector<Activity> activities; // whose progress could be read
    Faults faults;
};

struct Controller {
    std::uint32_t id = 0; // from 0
    std::optional<ControllerInfo> info;
    std::optional<ControllerVersionInfo> version;
    std::optional<ControllerSettings> settings;
    std::optional<DiscoverPathInfo> place;
    std::optional<DriverInfo> driver;
    std::optional<BatteryInfo> battery; // status 0: no battery
    std::optional<std::uint8_t> buzzer; // also empty if the state is unknown
    std::vector<Enclosure> enclosures;  // in order of ID
    std::vector<Drive> drives;          // in order of number
    std::vector<LogicalDrive> logicalDrives;
    Faults faults;
};

struct Snapshot {
    std::uint32_t controllerCount = 0; // reported by the library
    std::vector<Controller> controllers;
    Faults faults;
};

// A text field of a record: it ends at its NUL or, lacking one, with the field.
template <std::size_t size>
std::string_view fieldText(const char (&field)[size]) {
    const std::string_view whole(field, size);
    return whole.substr(0, whole.find('\0'));
}

// Return nullptr if not found.
const Controller* findController(const Snapshot& snapshot, std::uint32_t id);
const Drive* findDrive(const Controller& controller, std::uint32_t number);
const LogicalDrive* findLogicalDrive(const Controller& controller, std::uint32_t logDrvId);
const LogicalDrive* findArray(const Controller& controller, std::uint16_t arrayId);
const Enclosure* findEnclosure(const Controller& controller, std::uint32_t id);

// Whether a call of an operation on the controller failed in any way.
bool hasFault(const Controller& controller, std::string_view operation);

// Whether a drive has extents and all of them are inaccessible.
bool isInaccessible(const Drive& drive);

// The drive's extent that is a member of the array; nullptr: none. Its spares carry the same array ID.
const ExtentEntry* memberExtent(const Drive& drive, std::uint16_t arrayId);

// Fills in the members of a logical drive from its record, its lost mask and the controller's drives.
void resolveMembers(const Controller& controller, LogicalDrive* drive);

// "q5_getBatteryInfo failed with result 1"
std::string faultText(const Fault& fault);
