// The settings of the controller, its drives and its logical drives.
#include <algorithm>
#include <map>

#include "snapshot/text.h"
#include "tools/restore/planning.h"

static constexpr int kMaxLookahead = 8;

static std::string number(std::uint32_t value) {
    return std::to_string(value);
}

static const char* switchWord(bool on) {
    return on ? "enable" : "disable";
}

// The numeric settings of a controller, and its switches.
struct NumberSetting {
    const char* name;
    std::uint8_t ControllerSettings::*field;
    int CtrlConfigRecord::*record;
};
static constexpr NumberSetting kNumbers[] = {
    {"sync rate", &ControllerSettings::syncRate, &CtrlConfigRecord::syncRate},
    {"init rate", &ControllerSettings::initRate, &CtrlConfigRecord::initRate},
    {"media patrol rate", &ControllerSettings::mpRate, &CtrlConfigRecord::mpRate},
    {"migrate rate", &ControllerSettings::migrateRate, &CtrlConfigRecord::migrateRate},
    {"rebuild rate", &ControllerSettings::rebuildRate, &CtrlConfigRecord::rebuildRate},
    {"SMART poll interval", &ControllerSettings::smartPollInterval, &CtrlConfigRecord::smartPollInterval},
    {"enclosure poll interval", &ControllerSettings::encPollInterval, &CtrlConfigRecord::encPollInterval},
};
struct SwitchSetting {
    const char* name;
    std::uint8_t ControllerSettings::*field;
    std::uint8_t CtrlConfigRecord::*record;
};
static constexpr SwitchSetting kSwitches[] = {
    {"auto rebuild", &ControllerSettings::autoRebuild, &CtrlConfigRecord::autoRebuild},
    {"SMART check", &ControllerSettings::smartCheck, &CtrlConfigRecord::smartCheck},
    {"rebuild policy", &ControllerSettings::rebuildPolicy, &CtrlConfigRecord::rebuildPolicy},
};

static void addChange(std::string* changes, const std::string& text) {
    *changes += (changes->empty() ? "" : ", ") + text;
}

// A rate of 0 cannot be set: the present one is kept.
static void planNumbers(Planning* planning, CtrlConfigRecord* record, std::string* changes) {
    for (const NumberSetting& row : kNumbers) {
        const std::uint8_t saved = *planning->saved.settings.*row.field;
        const std::uint8_t now = *planning->now.settings.*row.field;
        const bool settable = saved != 0;
        record->*row.record = settable ? saved : now;
        if (saved != now && settable)
            addChange(changes, std::string(row.name) + " " + number(saved));
        if (saved != now && !settable)
            planning->plan.notes.push_back(std::string("the ") + row.name + " was 0, which cannot be set");
    }
}

// Whether the switch enables the automatic rebuild. Disabling it is not deferred: that prevents a rebuild
// onto a spare that is restored later.
static bool isDeferred(const Planning& planning, const SwitchSetting& row) {
    return row.field == &ControllerSettings::autoRebuild && *planning.saved.settings.*row.field != 0 &&
           *planning.now.settings.*row.field == 0;
}

static void planSwitches(Planning* planning, CtrlConfigRecord* record, std::string* changes) {
    for (const SwitchSetting& row : kSwitches) {
        const bool wanted = (*planning->saved.settings.*row.field) != 0 && !isDeferred(*planning, row);
        record->*row.record = wanted ? 1 : 0;
        if (wanted != ((*planning->now.settings.*row.field) != 0))
            addChange(changes, std::string(row.name) + " " + switchWord(wanted));
    }
}

static Step controllerStep(const Planning& planning, const CtrlConfigRecord& record,
                           const std::string& changes) {
    Step step;
    step.kind = StepKind::controller;
    step.controllerRecord = record;
    step.text = "set controller " + number(planning.now.id) + ": " + changes;
    return step;
}

// The step that enables the automatic rebuild comes last: it may start a rebuild, which could interfere with
// the other steps.
static void planSettings(Planning* planning) {
    CtrlConfigRecord record = {};
    record.setIndex = static_cast<int>(planning->now.id);
    std::string changes;
    planNumbers(planning, &record, &changes);
    planSwitches(planning, &record, &changes);
    if (!changes.empty())
        planning->plan.steps.push_back(controllerStep(*planning, record, changes));
    for (const SwitchSetting& row : kSwitches)
        if (isDeferred(*planning, row)) {
            record.*row.record = 1;
            planning->lastStep =
                controllerStep(*planning, record, std::string(row.name) + " " + switchWord(true));
        }
}

static void noteUnread(Planning* planning, const std::string& object) {
    planning->plan.notes.push_back("the settings of " + object + " could not be read; they stay");
}

// An adapter without a buzzer reports no state, in the backup and now.
static void planBuzzer(Planning* planning) {
    const std::optional<std::uint8_t> saved = planning->saved.buzzer, now = planning->now.buzzer;
    const std::string id = number(planning->now.id);
    if (saved.has_value() != now.has_value())
        noteUnread(planning, "the buzzer");
    if (saved && now && (*saved != 0) != (*now != 0)) {
        const char* word = switchWord(*saved != 0);
        addStep(planning, StepKind::buzzer, "set the buzzer of controller " + id + ": " + word,
                {"buzz", "-a", word, "-i", id});
    }
}

void planController(Planning* planning) {
    if (planning->saved.settings && planning->now.settings)
        planSettings(planning);
    else
        noteUnread(planning, "the controller");
    planBuzzer(planning);
}

// The queuing mode to set; a note says so if the present drive does not support it.
static bool wantedQueuing(Planning* planning, const Drive& drive, const char* name, bool saved,
                          bool supported) {
    if (saved && !supported)
        planning->plan.notes.push_back(driveName(drive.number) + " does not support " + name);
    return saved && supported;
}

static void planDriveSettings(Planning* planning, const PhyDrvSettings& saved, const Drive& drive) {
    const PhyDrvSettings& now = *drive.settings;
    Step step;
    step.kind = StepKind::drive;
    PhyDrvConfigRecord& record = step.driveRecord;
    record.controller = static_cast<int>(planning->now.id);
    record.driveId = static_cast<int>(drive.number);
    record.writeCache = saved.writeCache != 0;
    record.ncq = wantedQueuing(planning, drive, "NCQ", saved.ncqEnabled != 0, now.ncqSupported != 0);
    record.tcq = wantedQueuing(planning, drive, "TCQ", saved.tcqEnabled != 0, now.tcqSupported != 0);
    std::string changes;
    if ((now.writeCache != 0) != (record.writeCache != 0))
        addChange(&changes, std::string("write cache ") + switchWord(record.writeCache != 0));
    if ((now.ncqEnabled != 0) != (record.ncq != 0))
        addChange(&changes, std::string("NCQ ") + switchWord(record.ncq != 0));
    if ((now.tcqEnabled != 0) != (record.tcq != 0))
        addChange(&changes, std::string("TCQ ") + switchWord(record.tcq != 0));
    step.text = "set " + driveName(drive.number) + ": " + changes;
    if (!changes.empty())
        planning->plan.steps.push_back(step);
    if ((saved.smartCheck != 0) != (now.smartCheck != 0))
        planning->plan.notes.push_back("the SMART check of " + driveName(drive.number) +
                                       " is set by no command; it was " + switchWord(saved.smartCheck != 0) +
                                       "d");
}

// The 3 Gb/s option applies to all drives of a model and firmware: the first drive whose option could be read
// decides.
struct Models {
    std::set<std::string> decided;
    std::map<std::string, std::uint32_t> unread; // and the first drive of each
};

static std::string modelOf(const Drive& drive) {
    return std::string(fieldText(drive.info.model)) + '\n' + std::string(fieldText(drive.info.firmware));
}

static void planSpeed(Planning* planning, const Drive& saved, const Drive& drive, Models* models) {
    if (saved.speed3Gb.has_value() != drive.speed3Gb.has_value())
        models->unread.emplace(modelOf(drive), drive.number);
    if (!saved.speed3Gb || !drive.speed3Gb || !models->decided.insert(modelOf(drive)).second ||
        *saved.speed3Gb == *drive.speed3Gb)
        return;
    const std::string setting = std::to_string(*saved.speed3Gb);
    addStep(
        planning, StepKind::speed,
        "set the 3 Gb/s option of drives like " + driveName(drive.number) + ": " + setting,
        {"phydrv", "-a", "set3G", "-p", number(drive.number), "-i", number(planning->now.id), "-e", setting});
}

static void noteUnreadSpeeds(Planning* planning, const Models& models) {
    std::set<std::uint32_t> drives; // in their order
    for (const auto& [model, drive] : models.unread)
        if (models.decided.count(model) == 0)
            drives.insert(drive);
    for (const std::uint32_t drive : drives)
        noteUnread(planning, "the 3 Gb/s option of drives like " + driveName(drive));
}

// Whether the map puts the drive in the place of another one, and no drive in its own place.
static bool takesAnotherPlace(const Planning& planning, std::uint32_t number) {
    return planning.drives.count(number) == 0 &&
           std::any_of(planning.drives.begin(), planning.drives.end(),
                       [number](const auto& pair) { return pair.second == number; });
}

// Why the settings of a drive are not restored; empty: they are. That a drive is missing or has been replaced
// is only noted here: it is an obstacle where a logical drive or a spare needs the drive.
static std::string reasonToLeave(const Planning& planning, const Drive& saved) {
    const Drive* drive = presentDrive(planning, saved.number);
    if (isLeftOut(planning, saved.number))
        return driveName(saved.number) + " is left out";
    if (std::string moved = movedText(planning, saved.number); !moved.empty())
        return moved;
    if (drive == nullptr)
        return driveName(saved.number) + " of the backup is not here";
    if (takesAnotherPlace(planning, saved.number))
        return driveName(drive->number) +
               " takes the place of another one; its own settings are not restored";
    if (planning.drives.count(saved.number) == 0 && !hasSerialOf(saved, *drive))
        return driveName(drive->number) + " is another drive; its settings stay";
    if (!saved.settings || !drive->settings)
        return "the settings of " + driveName(drive->number) + " could not be read; they stay";
    return "";
}

void planDrives(Planning* planning) {
    Models models;
    for (const Drive& saved : planning->saved.drives) {
        const std::string reason = reasonToLeave(*planning, saved);
        if (!reason.empty()) {
            planning->plan.notes.push_back(reason);
            continue;
        }
        const Drive& drive = *presentDrive(*planning, saved.number);
        planDriveSettings(planning, *saved.settings, drive);
        planSpeed(planning, saved, drive, &models);
    }
    noteUnreadSpeeds(planning, models);
}

// The automatic mode takes precedence, as in the command.
static const char* policyWord(std::uint8_t flags) {
    if ((flags & kAutoMode) != 0)
        return "auto";
    if ((flags & kBypass) != 0)
        return "bypass";
    return (flags & kWriteBack) != 0 ? "writeback" : "writethru";
}

static void addSetting(std::string* text, const std::string& key, const std::string& value) {
    *text += (text->empty() ? "" : ",") + key + "=" + value;
}

// The settings that differ; all of them if the logical drive is yet to be created.
static std::string differentSettings(const LogDrvSettings& saved, const LogDrvSettings* now) {
    std::string text;
    const std::string policy = policyWord(saved.cacheFlags);
    if (now == nullptr || policy != policyWord(now->cacheFlags))
        addSetting(&text, "writepolicy", policy);
    if (saved.lookahead <= kMaxLookahead && (now == nullptr || saved.lookahead != now->lookahead))
        addSetting(&text, "lookahead", number(saved.lookahead));
    const bool consolidation = saved.consolidation != 0;
    if (now == nullptr || consolidation != (now->consolidation != 0))
        addSetting(&text, "consolidation", switchWord(consolidation));
    return text;
}

static void noteUnsettable(Planning* planning, const LogicalDrive& saved, std::uint32_t id) {
    const LogDrvSettings& settings = *saved.settings;
    if (settings.lookahead > kMaxLookahead)
        planning->plan.notes.push_back(arrayName(saved, id) + ": a lookahead of " +
                                       number(settings.lookahead) + " cannot be set");
    const LogicalDrive* now = findLogicalDrive(planning->now, id);
    const int flags = settings.cacheFlags;
    const bool isPlain = flags == 0 || flags == kWriteBack || flags == kBypass || flags == kAutoMode;
    if (!isPlain && (now == nullptr || !now->settings || now->settings->cacheFlags != flags))
        planning->plan.notes.push_back(arrayName(saved, id) + ": its cache flags were " +
                                       number(settings.cacheFlags) + ", which no command sets");
}

// Whether the command can set the name: not one with a comma, or that contains another key of the settings.
static bool isTypableName(const std::string& name) {
    std::string lower = name;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    for (const char* word : {",", "writepolicy", "lookahead", "consolidation"})
        if (lower.find(word) != std::string::npos)
            return false;
    return name == trimmed(name) && name.size() < sizeof LogDrvSettings::name && !name.empty();
}

static void addName(Planning* planning, const LogicalDrive& saved, const LogicalDrive& now,
                    std::string* text) {
    const std::string name(fieldText(saved.info.name));
    if (name == fieldText(now.info.name))
        return;
    if (isTypableName(name))
        addSetting(text, "name", name);
    else
        planning->plan.notes.push_back(arrayName(now, now.info.logDrvId) + " was called \"" +
                                       printable(name) + "\", a name that cannot be set");
}

void planArraySettings(Planning* planning) {
    for (const LogicalDrive& saved : planning->saved.logicalDrives) {
        const auto id = planning->ids.find(saved.info.arrayId);
        if (id == planning->ids.end() || planning->unsettled.count(id->second) != 0)
            continue;
        const LogicalDrive* now = findLogicalDrive(planning->now, id->second);
        if (!saved.settings || (now != nullptr && !now->settings)) {
            noteUnread(planning, arrayName(saved, id->second));
            continue;
        }
        noteUnsettable(planning, saved, id->second);
        std::string text = differentSettings(*saved.settings, now != nullptr ? &*now->settings : nullptr);
        if (now != nullptr)
            addName(planning, saved, *now, &text);
        const char* condition = now == nullptr ? " (unless it is created with them)" : "";
        if (!text.empty())
            addStep(planning, StepKind::array,
                    "set logical drive " + number(id->second) + ": " + printable(text) + condition,
                    {"logdrv", "-a", "mod", "-i", number(planning->now.id), "-l", number(id->second), "-s",
                     text});
    }
}
