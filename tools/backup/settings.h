// Which settings a snapshot has, and of which logical drives the lost members. A backup may lack some, or
// hold zeros in the place of settings.
#pragma once

#include <string>

#include "snapshot/snapshot.h"
#include "tools/status/changes.h"

enum class SettingsState { unread, zero, set };

// A group of settings of one object.
struct Settings {
    std::string object; // "drive 2 of controller 0"
    std::string what;   // "its settings"
    SettingsState state = SettingsState::unread;
};

inline constexpr char kAllSettings[] = "its settings", kBuzzerSetting[] = "its buzzer setting";

// The settings of all objects in the snapshot.
std::vector<Settings> settingsOf(const Snapshot& snapshot);

bool isZero(const PhyDrvSettings& settings);

bool isUnread(const std::vector<Settings>& list, const std::string& object, const std::string& what);

// A warning for each group of settings that could not be read, unless it could not be read earlier either.
Lines unreadLines(const Snapshot& now, const Snapshot& earlier);

// A line for each group of settings that could not be read earlier, but can be read now.
Lines readAgainLines(const Snapshot& now, const Snapshot& earlier);

// A warning for each group of settings that is all zero now, but was not.
Lines zeroLines(const Snapshot& now, const Snapshot& earlier);

// Whether settings could be read earlier, but not now.
bool lacksSettings(const Snapshot& now, const Snapshot& earlier);
