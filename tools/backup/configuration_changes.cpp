// What is different between two configuration files, and between the extents of two snapshots.
#include <algorithm>
#include <sstream>

#include "config/block.h"
#include "config/ctrl_block.h"
#include "config/logdrv_block.h"
#include "config/phydrv_block.h"
#include "snapshot/text.h"
#include "tools/backup/configuration.h"

// A block: its object, and its keys in order.
struct ConfigurationBlock {
    std::string object; // "drive 2 of controller 0"
    std::vector<std::pair<std::string, std::string>> settings;
};

static std::string settingOf(const ConfigurationBlock& block, const std::string& key) {
    for (const auto& [name, value] : block.settings)
        if (name == key)
            return value;
    return "?";
}

// A drive or logical drive is identified by the keys of its block: the index counts over all controllers.
static std::string objectOfBlock(const std::string& marker, const std::string& index,
                                 const ConfigurationBlock& block) {
    if (marker == kPhyDrvMarker)
        return "drive " + settingOf(block, "<PhyDrvID>") + " of controller " +
               settingOf(block, "<PhyDrvCtrlID>");
    if (marker == kLogDrvMarker)
        return "logical drive " + settingOf(block, "<LogDrvID>") + " of controller " +
               settingOf(block, "<LogyDrvCtrlID>");
    return "controller " + index;
}

static std::vector<ConfigurationBlock> parseBlocks(const std::string& text) {
    std::vector<ConfigurationBlock> blocks;
    std::istringstream stream(text);
    ConfigurationBlock block;
    std::string marker, index;
    for (std::string line; std::getline(stream, line);) {
        const std::size_t blank = std::min(line.find(' '), line.size());
        const std::string key = line.substr(0, blank);
        const std::string value = blank < line.size() ? line.substr(blank + 1) : "";
        if (key == kEndMarker) {
            block.object = objectOfBlock(marker, index, block);
            blocks.push_back(block);
            block = {};
        } else if (!key.empty() && key[0] == '[') {
            marker = key;
            index = value;
        } else {
            block.settings.emplace_back(key, value);
        }
    }
    return blocks;
}

// "<SyncRate>" without its brackets.
static std::string keyName(const std::string& key) {
    return key.size() > 2 ? key.substr(1, key.size() - 2) : key;
}

static const ConfigurationBlock* findBlock(const std::vector<ConfigurationBlock>& blocks,
                                           const std::string& object) {
    for (const ConfigurationBlock& block : blocks)
        if (block.object == object)
            return &block;
    return nullptr;
}

// The group of settings that a key belongs to; nullptr: it is not a setting.
static const char* settingsOfKey(std::string_view key) {
    if (key == "<BuzzerEnable>")
        return kBuzzerSetting;
    const bool isOfArray = key.starts_with("<Log");
    const bool isSetting = isOfArray ? key == "<LogDrvLookAheadValue>" || key == "<LogDrvConsolidation>"
                                     : key != "<GlobalSpare>";
    return isSetting ? kAllSettings : nullptr;
}

static bool isUnreadKey(const std::vector<Settings>& unread, const std::string& object,
                        const std::string& key) {
    const char* settings = settingsOfKey(key);
    return settings != nullptr && isUnread(unread, object, settings);
}

static void addBlockChanges(const ConfigurationBlock& earlier, const ConfigurationBlock& now,
                            const std::vector<Settings>& unread, Lines* lines) {
    for (const auto& [key, value] : now.settings) {
        const std::string before = settingOf(earlier, key);
        std::string text = now.object;
        text.append(": ").append(keyName(key)).append(" was ").append(before);
        text.append("; it is ").append(value);
        if (before != value && !isUnreadKey(unread, now.object, key))
            lines->push_back({Severity::info, printable(text)});
    }
}

// An object whose settings could not be read for one of the files has no block in it, but is not new or gone.
static void addPresence(const std::string& object, const char* text, const std::vector<Settings>& unread,
                        Lines* lines) {
    if (!isUnread(unread, object, kAllSettings))
        lines->push_back({Severity::info, printable(object + text)});
}

Lines configurationChanges(const std::string& earlier, const std::string& now,
                           const std::vector<Settings>& unread) {
    Lines lines;
    const std::vector<ConfigurationBlock> before = parseBlocks(earlier), after = parseBlocks(now);
    for (const ConfigurationBlock& block : after)
        if (const ConfigurationBlock* same = findBlock(before, block.object))
            addBlockChanges(*same, block, unread, &lines);
        else
            addPresence(block.object, ": is new in the configuration", unread, &lines);
    for (const ConfigurationBlock& block : before)
        if (findBlock(after, block.object) == nullptr)
            addPresence(block.object, ": is no longer in the configuration", unread, &lines);
    return lines;
}

// Compares place and use, but not transient states.
static bool isSameExtent(const ExtentEntry& a, const ExtentEntry& b) {
    return a.index == b.index && a.assignment == b.assignment && a.arrayId == b.arrayId &&
           a.start == b.start && a.size == b.size;
}

static bool haveSameExtents(const Drive& a, const Drive& b) {
    const auto first = extents(a.info), second = extents(b.info);
    return std::equal(first.begin(), first.end(), second.begin(), second.end(), isSameExtent);
}

Lines layoutChanges(const Snapshot& earlier, const Snapshot& now) {
    Lines lines;
    for (const Controller& controller : now.controllers) {
        const Controller* before = findController(earlier, controller.id);
        for (const Drive& drive : controller.drives) {
            const Drive* same = before != nullptr ? findDrive(*before, drive.number) : nullptr;
            if (same == nullptr)
                continue;
            const std::string object =
                "drive " + std::to_string(drive.number) + " of controller " + std::to_string(controller.id);
            if (!haveSameExtents(*same, drive))
                lines.push_back({Severity::info, object + ": its extents have changed"});
            if (same->speed3Gb && drive.speed3Gb && *same->speed3Gb != *drive.speed3Gb)
                lines.push_back({Severity::info, object + ": its 3 Gb/s setting has changed"});
        }
    }
    return lines;
}
