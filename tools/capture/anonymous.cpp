// Pseudonyms for the serials and names of a snapshot. Equal texts get equal ones.
#include <algorithm>
#include <cstring>
#include <map>

#include "tools/capture/capture.h"

// Replacements in order of appearance: "serial-1", "serial-2". Empty texts stay empty.
struct Pseudonyms {
    const char* kind;
    std::map<std::string, std::string> known;
};

static std::string pseudonym(Pseudonyms* pseudonyms, const std::string& original) {
    if (original.empty())
        return original;
    const std::string next = pseudonyms->kind + std::to_string(pseudonyms->known.size() + 1);
    return pseudonyms->known.try_emplace(original, next).first->second;
}

template <std::size_t size>
static void put(char (&field)[size], const std::string& text) {
    std::memset(field, 0, size);
    std::memcpy(field, text.data(), std::min(text.size(), size - 1));
}

template <std::size_t size>
static void replace(Pseudonyms* pseudonyms, char (&field)[size]) {
    put(field, pseudonym(pseudonyms, std::string(fieldText(field))));
}

// The settings contain only the beginning of a name.
static void replaceName(Pseudonyms* names, LogicalDrive* drive) {
    const std::string name(fieldText(drive->info.name));
    replace(names, drive->info.name);
    if (!drive->settings)
        return;
    if (name.starts_with(fieldText(drive->settings->name)))
        put(drive->settings->name, std::string(fieldText(drive->info.name)));
    else
        replace(names, drive->settings->name);
}

void makeAnonymous(Snapshot* snapshot) {
    Pseudonyms serials = {"serial-", {}}, names = {"name-", {}};
    for (Controller& controller : snapshot->controllers) {
        for (Drive& drive : controller.drives)
            replace(&serials, drive.info.serial);
        for (LogicalDrive& drive : controller.logicalDrives) {
            replaceName(&names, &drive);
            for (Member& member : drive.members)
                member.serial = pseudonym(&serials, member.serial);
        }
    }
}
