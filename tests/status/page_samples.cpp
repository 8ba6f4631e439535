// Samples of reports, most with hostile contents.
#include "tests/status/page_samples.h"

#include <algorithm>
#include <cstring>
#include <random>

#include "snapshot/fields.h"
#include "snapshot/read.h"

static void setText(char* field, std::size_t size, std::string_view text) {
    std::memset(field, 0, size);
    std::memcpy(field, text.data(), std::min(size, text.size()));
}

static Drive makeDrive(std::uint32_t number) {
    static constexpr std::uint64_t sectors = 7814037168;
    Drive drive;
    drive.number = number;
    drive.info.driveId = static_cast<std::uint16_t>(number - 1);
    drive.info.channel = static_cast<std::uint16_t>(number - 1);
    drive.info.enclosureId = static_cast<std::uint16_t>((number - 1) / 16);
    drive.info.capacity = sectors;
    setText(drive.info.model, sizeof drive.info.model, "TQ4000-7200AS-ENTERPRI");
    setText(drive.info.serial, sizeof drive.info.serial, "TQ5A00417" + std::to_string(10000 + number));
    setText(drive.info.firmware, sizeof drive.info.firmware, "1.07b");
    drive.patrol = MediaPatrolProgress{};
    drive.settings = PhyDrvSettings{};
    drive.locate = 0;
    return drive;
}

static void addExtent(Drive* drive, std::uint8_t assignment, std::uint16_t arrayId, std::uint64_t size) {
    ExtentEntry& extent = drive->info.extent[drive->info.extentCount];
    const ExtentEntry* before = drive->info.extentCount == 0 ? nullptr : &extent - 1;
    extent.index = drive->info.extentCount++;
    extent.assignment = assignment;
    extent.access = kExtentAccessible;
    if (assignment == 0)
        extent.access |= kExtentFree;
    extent.arrayId = arrayId;
    extent.start = before != nullptr ? before->start + before->size : 0;
    extent.size = size;
}

static LogicalDrive makeArray(std::uint16_t id, std::uint8_t level, std::string_view name,
                              std::uint32_t firstMember, int members) {
    LogicalDrive drive;
    drive.info.arrayId = drive.info.logDrvId = id;
    drive.info.raidLevel = level;
    drive.info.functionalStatus = kOnline;
    drive.info.sectorCount = 1000000000;
    drive.info.diskCount = static_cast<std::uint16_t>(members);
    for (int i = 0; i < members; ++i)
        drive.info.memberIds[i] = static_cast<std::uint8_t>(firstMember - 1 + static_cast<unsigned>(i));
    setText(drive.info.name, sizeof drive.info.name, name);
    drive.lostMask = 0;
    drive.settings = LogDrvSettings{};
    return drive;
}

static void addSensor(EnclosureStatus* status, int place, std::uint8_t type, std::uint32_t reading) {
    status->sensor[place].type = type;
    status->sensor[place].reading = reading;
}

static Enclosure makeEnclosure(std::uint32_t id) {
    Enclosure enclosure;
    enclosure.id = id;
    enclosure.entry.type = kTraybox400;
    enclosure.status = EnclosureStatus{};
    addSensor(&*enclosure.status, 0, kFanSensor, 2700);
    addSensor(&*enclosure.status, 1, kFanSensor, id == 2 ? 0 : 2650);
    addSensor(&*enclosure.status, 2, kRail5VSensor, 5020);
    addSensor(&*enclosure.status, 3, kRail12VSensor, 12110);
    addSensor(&*enclosure.status, 4, kTemperatureSensor, 38 + 8 * id);
    return enclosure;
}

static Controller makeController(std::uint32_t id) {
    Controller controller;
    controller.id = id;
    controller.info = ControllerInfo{};
    controller.info->memorySize = 512;
    controller.info->maxPorts = 70;
    controller.version = ControllerVersionInfo{};
    controller.settings = ControllerSettings{};
    controller.place = DiscoverPathInfo{};
    controller.driver = DriverInfo{};
    controller.battery = BatteryInfo{};
    controller.battery->status = 0x80 | kBatteryDischarging;
    controller.battery->temperature = 3210;
    controller.battery->voltage = 3987;
    controller.buzzer = 1;
    return controller;
}

static void addActivity(LogicalDrive* drive, ActivityBit kind, std::uint8_t state, std::uint16_t percent) {
    drive->info.activityStatus |= kind;
    drive->activities.push_back({kind, state, percent});
}

static Snapshot finished(Controller controller) {
    for (LogicalDrive& drive : controller.logicalDrives)
        resolveMembers(controller, &drive);
    return {1, {std::move(controller)}, {}};
}

static constexpr const char* kNames[] = {
    "Archive",
    "Mail",
    "A very long name of a logical drive that somebody has typed without any blank_in_it_at_all_1",
    "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D \xD7\xA2\xD7\x95\xD7\x9C\xD7\x9D",
    "\xF0\x9F\x92\xBE backups \xF0\x9F\x94\xA5",
    "x"};

// 64 drives in four enclosures, 32 logical drives, spares and long names.
static Controller largestController() {
    Controller controller = makeController(0);
    for (std::uint32_t id = 0; id < 4; ++id)
        controller.enclosures.push_back(makeEnclosure(id));
    for (std::uint16_t id = 0; id < 32; ++id)
        controller.logicalDrives.push_back(makeArray(id, id % 2 == 0 ? kRaid5 : kRaid1, kNames[id % 6],
                                                     4u * (id / 2u) + 1, id < 30 ? 4 : 2));
    for (std::uint32_t number = 1; number <= kMaxSnapshotDrives; ++number) {
        Drive drive = makeDrive(number);
        const auto first = static_cast<std::uint16_t>(2 * ((number - 1) / 4));
        addExtent(&drive, kExtentAssigned, first, 3000000000);
        addExtent(&drive, kExtentAssigned, first + 1, 2000000000);
        addExtent(&drive, number % 5 == 0 ? kExtentGlobalSpare : 0, kNoArray, 1500000000);
        if (number % 7 == 0)
            addExtent(&drive, kExtentDedicatedSpare, first, 800000000);
        controller.drives.push_back(drive);
    }
    return controller;
}

// The largest controller, with losses and activities.
static Snapshot makeLarge() {
    Controller controller = largestController();
    controller.drives[1].info.extent[0].access = 0;
    controller.drives[1].info.extent[1].access = 0;
    controller.drives[1].locate = 1;
    controller.drives[5].info.extent[0].access |= kExtentSmartFailed;
    controller.drives[8].info.extent[0].state = kExtentRebuilding;
    controller.drives[9].patrol->errorCount = 3;
    controller.drives[10].patrol->state = kPatrolRunning;
    controller.drives[10].patrol->progress = 42;
    for (std::size_t lost = 0; lost < 2; ++lost) {
        controller.logicalDrives[lost].lostMask = 2;
        controller.logicalDrives[lost].info.functionalStatus = kCritical;
    }
    controller.logicalDrives[8].info.functionalStatus = 0;
    addActivity(&controller.logicalDrives[4], kRebuilding, 0, 45);
    addActivity(&controller.logicalDrives[6], kSynchronizing, kActivityPaused, 7);
    return finished(std::move(controller));
}

static Snapshot makeEmpty() {
    return {};
}

// A controller that refuses everything.
static Snapshot makeFaulted() {
    Snapshot snapshot;
    Controller controller;
    snapshot.controllerCount = 1;
    for (const char* operation : {"q5_getControllerInfo", "q5_getBatteryInfo", "q5_getPhyDrvInfo"})
        controller.faults.push_back({operation, FaultKind::refused, -5});
    Enclosure enclosure;
    enclosure.entry.type = 77;
    enclosure.faults.push_back({"q5_getEnclosureStatus", FaultKind::overrun, 116});
    controller.enclosures.push_back(enclosure);
    LogicalDrive drive = makeArray(3, 200, "", 7, 3);
    drive.info.diskCount = 1000;
    drive.faults.push_back({"q5_getLogDrvInfo", FaultKind::impossible, 1000});
    addActivity(&drive, kMigrating, 0, 60000);
    controller.logicalDrives.push_back(drive);
    resolveMembers(controller, &controller.logicalDrives[0]);
    snapshot.controllers.push_back(controller);
    return snapshot;
}

static constexpr std::string_view kUntrustedTexts[] = {
    "</style><script>x=1</script>",
    "\"><img src=x onerror=x=1>",
    "' onload='x=1",
    "<!--",
    "--><b>",
    "]]>&amp;&#60;&lt",
    "</article></main></body>",
    "<svg/onload=x=1>",
    "\xE2\x80\xAE"
    "evil\xE2\x81\xA6",
    "\xD7\x90\xD7\x91\xD8\xA7\xD8\xB1",
    "\xFF\xFE\xC0\xAF\xED\xA0\x80",
    "\xEF\xBF\xBE\xEF\xB7\x90\xF4\x8F\xBF\xBF",
    "\x01\x07\x1B[31m\r\n\t\x7F",
    "\xC2\x85\xE2\x80\xA8\xE2\x80\xA9",
    "\\x3c\\",
    "\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x92\xBB\xF0\x9F\x92\xBE",
    "Z\xCC\x80\xCC\x81\xCC\x82\xCC\x83\xCC\x84\xCC\x85",
    "WWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWW",
    " ",
    "",
};

std::span<const std::string_view> untrustedTexts() {
    return kUntrustedTexts;
}

static void setTexts(const RecordType& type, void* record, std::string_view text) {
    for (const Field& field : type.fields)
        if (field.kind == FieldKind::text)
            std::memcpy(static_cast<char*>(record) + field.offset,
                        std::string(text).append(field.size, '\0').data(), field.size);
}

template <typename Record>
static void setTexts(Record* record, std::string_view text) {
    setTexts(recordType<Record>(), record, text);
}

Snapshot withTexts(std::string_view text) {
    Snapshot snapshot = makeLarge();
    Controller& controller = snapshot.controllers[0];
    controller.drives.resize(8);
    controller.logicalDrives.resize(4);
    setTexts(&*controller.info, text);
    setTexts(&*controller.place, text);
    setTexts(&*controller.driver, text);
    for (Drive& drive : controller.drives)
        setTexts(&drive.info, text);
    for (LogicalDrive& drive : controller.logicalDrives) {
        setTexts(&drive.info, text);
        setTexts(&*drive.settings, text);
        resolveMembers(controller, &drive);
    }
    controller.faults.push_back({std::string(text), FaultKind::refused, 1});
    return snapshot;
}

static Snapshot makeUntrusted() {
    Snapshot snapshot = withTexts("");
    Controller& controller = snapshot.controllers[0];
    controller.drives = makeLarge().controllers[0].drives;
    controller.logicalDrives = makeLarge().controllers[0].logicalDrives;
    std::size_t at = 0;
    const auto next = [&] { return kUntrustedTexts[at++ % std::size(kUntrustedTexts)]; };
    for (LogicalDrive& drive : controller.logicalDrives)
        setTexts(&drive.info, next());
    for (Drive& drive : controller.drives)
        setTexts(&drive.info, next());
    return finished(std::move(controller));
}

template <typename Record>
static void fill(Record* record, std::mt19937* generator) {
    auto* bytes = reinterpret_cast<unsigned char*>(record);
    std::generate(bytes, bytes + sizeof *record, [&] { return static_cast<unsigned char>((*generator)()); });
}

static Snapshot randomRecords() {
    return withRandomRecords(1);
}

Snapshot withRandomRecords(std::uint32_t seed) {
    std::mt19937 generator(seed);
    Snapshot snapshot = makeLarge();
    Controller& controller = snapshot.controllers[0];
    fill(&*controller.info, &generator);
    fill(&*controller.version, &generator);
    fill(&*controller.settings, &generator);
    fill(&*controller.driver, &generator);
    fill(&*controller.battery, &generator);
    for (Enclosure& enclosure : controller.enclosures) {
        fill(&enclosure.entry, &generator);
        fill(&*enclosure.status, &generator);
    }
    for (Drive& drive : controller.drives) {
        fill(&drive.info, &generator);
        fill(&*drive.patrol, &generator);
    }
    for (LogicalDrive& drive : controller.logicalDrives) {
        const std::uint16_t id = drive.info.logDrvId; // listed once, as the snapshot reader ensures
        fill(&drive.info, &generator);
        drive.info.logDrvId = id;
        drive.activities = {{kRebuilding, 0, static_cast<std::uint16_t>(generator())}};
    }
    return finished(std::move(controller));
}

static constexpr PageSample kSamples[] = {
    {"large", makeLarge},         {"empty", makeEmpty},     {"faulted", makeFaulted},
    {"untrusted", makeUntrusted}, {"noise", randomRecords},
};

std::span<const PageSample> pageSamples() {
    return kSamples;
}
