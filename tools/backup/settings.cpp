// Which settings a snapshot has, and which ones an earlier snapshot had.
#include "tools/backup/settings.h"

#include <algorithm>

#include "snapshot/state.h"
#include "snapshot/text.h"

using SettingsList = std::vector<Settings>;

// All zero can only be a failed reading: no rate or interval can be set to 0.
static bool isZero(const ControllerSettings& settings) {
    return (settings.rebuildRate | settings.syncRate | settings.mpRate | settings.initRate |
            settings.migrateRate | settings.smartPollInterval | settings.encPollInterval) == 0;
}

bool isZero(const PhyDrvSettings& settings) {
    return (settings.writeCache | settings.smartCheck | settings.tcqSupported | settings.ncqSupported |
            settings.tcqEnabled | settings.ncqEnabled) == 0;
}

static bool isZero(const LogDrvSettings& settings) {
    return (settings.cacheFlags | settings.consolidation | settings.lookahead) == 0 &&
           fieldText(settings.name).empty();
}

// For a buzzer or an option, zero is a setting: off. For lost members, it means that there are none.
static bool isZero(std::int64_t) {
    return false;
}

template <typename Record>
static void add(const std::string& object, const char* what, const std::optional<Record>& record,
                SettingsList* list) {
    const SettingsState present = record && isZero(*record) ? SettingsState::zero : SettingsState::set;
    list->push_back({object, what, record ? present : SettingsState::unread});
}

// A refused version record makes the backup incomplete and is not listed here.
static void addFirmware(const Controller& controller, const std::string& where, SettingsList* list) {
    if (!controller.version)
        return;
    const VersionNumber& version = controller.version->firmwareVersion;
    const bool isSet = (version.major | version.minor | version.third | version.fourth) != 0;
    list->push_back({where, "its firmware version", isSet ? SettingsState::set : SettingsState::zero});
}

// Lost members that could not be read of a logical drive that is not online make the backup an incomplete
// one.
static void addLogicalDrive(const LogicalDrive& drive, const std::string& where, SettingsList* list) {
    const std::string object = "logical drive " + std::to_string(drive.info.logDrvId) + " of " + where;
    add(object, kAllSettings, drive.settings, list);
    if (drive.lostMask || arrayState(drive) == ArrayState::online)
        add(object, "its lost members", drive.lostMask, list);
}

static void addController(const Controller& controller, SettingsList* list) {
    const std::string where = "controller " + std::to_string(controller.id);
    addFirmware(controller, where, list);
    add(where, kAllSettings, controller.settings, list);
    add(where, kBuzzerSetting, controller.buzzer, list);
    for (const Drive& drive : controller.drives) {
        const std::string object = "drive " + std::to_string(drive.number) + " of " + where;
        add(object, kAllSettings, drive.settings, list);
        add(object, "its 3 Gb/s setting", drive.speed3Gb, list);
    }
    for (const LogicalDrive& drive : controller.logicalDrives)
        addLogicalDrive(drive, where, list);
}

SettingsList settingsOf(const Snapshot& snapshot) {
    SettingsList list;
    for (const Controller& controller : snapshot.controllers)
        addController(controller, &list);
    return list;
}

static const Settings* find(const SettingsList& list, const std::string& object, const std::string& what) {
    for (const Settings& each : list)
        if (each.object == object && each.what == what)
            return &each;
    return nullptr;
}

bool isUnread(const SettingsList& list, const std::string& object, const std::string& what) {
    const Settings* found = find(list, object, what);
    return found != nullptr && found->state == SettingsState::unread;
}

Lines unreadLines(const Snapshot& now, const Snapshot& earlier) {
    Lines lines;
    const SettingsList before = settingsOf(earlier);
    for (const Settings& each : settingsOf(now))
        if (each.state == SettingsState::unread && !isUnread(before, each.object, each.what))
            lines.push_back({Severity::warning, each.object + ": " + each.what + " could not be read"});
    return lines;
}

Lines readAgainLines(const Snapshot& now, const Snapshot& earlier) {
    Lines lines;
    const SettingsList before = settingsOf(earlier);
    for (const Settings& each : settingsOf(now))
        if (each.state != SettingsState::unread && isUnread(before, each.object, each.what))
            lines.push_back({Severity::info, each.object + ": " + each.what + " can be read again"});
    return lines;
}

Lines zeroLines(const Snapshot& now, const Snapshot& earlier) {
    Lines lines;
    const SettingsList before = settingsOf(earlier);
    for (const Settings& each : settingsOf(now)) {
        const Settings* same = find(before, each.object, each.what);
        if (each.state == SettingsState::zero && same != nullptr && same->state == SettingsState::set)
            lines.push_back({Severity::warning, each.object + ": only zeros were read for " + each.what});
    }
    return lines;
}

bool lacksSettings(const Snapshot& now, const Snapshot& earlier) {
    const SettingsList before = settingsOf(earlier), after = settingsOf(now);
    return std::any_of(before.begin(), before.end(), [&](const Settings& each) {
        return each.state != SettingsState::unread && isUnread(after, each.object, each.what);
    });
}
