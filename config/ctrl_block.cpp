// The controller block of the configuration file.
#include "config/ctrl_block.h"

#include "commands/vocabulary.h"
#include "config/block.h"
#include "config/display.h"

namespace {
struct CtrlSource {
    const ControllerSettings* settings;
    std::uint8_t buzzer;
    int globalSpareCount;
};
} // namespace

using Record = CtrlConfigRecord;
using Source = CtrlSource;

static const Key<Source, Record> keys[] = {
    {"<AutoRebuild>",
     [](BlockText* text, const Source& s) { append(text, "%s", enableText(s.settings->autoRebuild)); },
     readFlag<&Record::autoRebuild>},
    {"<SyncRate>", [](BlockText* text, const Source& s) { append(text, "%d", s.settings->syncRate); },
     readNumber<&Record::syncRate>},
    {"<InitRate>", [](BlockText* text, const Source& s) { append(text, "%d", s.settings->initRate); },
     readNumber<&Record::initRate>},
    {"<MPRate>", [](BlockText* text, const Source& s) { append(text, "%d", s.settings->mpRate); },
     readNumber<&Record::mpRate>},
    {"<MigrateRate>", [](BlockText* text, const Source& s) { append(text, "%d", s.settings->migrateRate); },
     readNumber<&Record::migrateRate>},
    {"<RebuildRate>", [](BlockText* text, const Source& s) { append(text, "%d", s.settings->rebuildRate); },
     readNumber<&Record::rebuildRate>},
    {"<SmartCEnable>",
     [](BlockText* text, const Source& s) { append(text, "%s", enableText(s.settings->smartCheck)); },
     readFlag<&Record::smartCheck>},
    {"<SmartPollInt>",
     [](BlockText* text, const Source& s) { append(text, "%d", s.settings->smartPollInterval); },
     readNumber<&Record::smartPollInterval>},
    {"<EncPollInt>",
     [](BlockText* text, const Source& s) { append(text, "%d", s.settings->encPollInterval); },
     readNumber<&Record::encPollInterval>},
    // Compatibility: a number in the file, applied as a flag.
    {"<RebuildPolicy>",
     [](BlockText* text, const Source& s) { append(text, "%d", s.settings->rebuildPolicy); },
     readNumber<&Record::rebuildPolicy>},
    // Compatibility: written as "On" or "Off", neither of which sets a flag, so that an exported state
    // always reads back as off. The buzzer and the spare count are displayed, never applied.
    {"<BuzzerEnable>", [](BlockText* text, const Source& s) { append(text, "%s", onOffText(s.buzzer)); },
     readFlag<&Record::buzzer>},
    {"<GlobalSpare>", [](BlockText* text, const Source& s) { append(text, "%d", s.globalSpareCount); },
     readNumber<&Record::globalSpareCount>},
};

int CtrlSettingsToBuffer(const ControllerSettings* settings, std::uint8_t buzzer, int globalSpareCount,
                         char* text) {
    writeBlock<Source, Record>(keys, {settings, buzzer, globalSpareCount}, text);
    return 0;
}

int GetControllerConfig(std::FILE* file, CtrlConfigRecord* record) {
    readBlock<Source, Record>(keys, file, record);
    return 0;
}

// Compatibility: the rebuild policy is not displayed.
void DisplayControllerConfig(CtrlConfigRecord record) {
    openDisplay("Controller setting", record.setIndex);
    showWord("Auto Rebuild", enableText(record.autoRebuild));
    showWord("Smart Check", enableText(record.smartCheck));
    showNumber("Synchronization rate", record.syncRate);
    showNumber("Initialization rate", record.initRate);
    showNumber("Media Patrol rate", record.mpRate);
    showNumber("Migration rate", record.migrateRate);
    showNumber("Rebuild rate", record.rebuildRate);
    showNumber("Smart check polling interval", record.smartPollInterval);
    showNumber("Enclosure polling interval", record.encPollInterval);
    showWord("Buzzer", onOffText(record.buzzer));
    showNumber("Number of extent with Global Spare setting", record.globalSpareCount);
    closeDisplay();
}
