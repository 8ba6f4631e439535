// Which settings a snapshot has, and of which logical drives the lost members. A backup may lack some, or
// hold zeros in the place of settings.
#pragma once

#include <string>

#include "snapshot/snapshot.h"
#include "tools/status/changes.h"

enum class SettingsState { unread, zero, set };

struct Settings {
    std::string object; // "drive 2 of controller 0"
    std::string what;   // "its settings"
    SettingsState state = SettingsState::unread;
};

inline constexpr char kAllSettings[] = "its settings", kBuzzerSetting[] = "its buzzer setting";

// Those of all objects that are listed.
std::vector<Settings> settingsOf(const Snapshot& snapshot);

bool isZero(const PhyDrvSettings& settings);

bool isUnread(const std::vector<Settings>& list, const std::string& object, const std::string& what);

// A warning for all settings that could not be read, except for those that could not be read earlier either.
Lines unreadLines(const Snapshot& now, const Snapshot& earlier);

// A line for all settings that could not be read earlier, but can be read now.
Lines readAgainLines(const Snapshot& now, const Snapshot& earlier);

// A warning for all settings that are zero now, but were not.
Lines zeroLines(const Snapshot& now, const Snapshot& earlier);

// Whether settings could be read earlier, but not now.
bool lacksSettings(const Snapshot& now, const Snapshot& earlier);
