// The physical drive block of the configuration file.
#include "config/phydrv_block.h"

#include "commands/vocabulary.h"
#include "config/block.h"
#include "config/display.h"

namespace {
struct PhyDrvSource {
    int controller;
    const PhyDrvSettings* settings;
};
} // namespace

using Record = PhyDrvConfigRecord;
using Source = PhyDrvSource;

static const char* featureText(std::uint8_t supported, std::uint8_t enabled) {
    return supported != 0 ? enableText(enabled) : "not supported";
}

static const Key<Source, Record> keys[] = {
    {"<PhyDrvCtrlID>", [](BlockText* text, const Source& s) { append(text, "%d", s.controller); },
     readNumber<&Record::controller>},
    {"<PhyDrvID>", [](BlockText* text, const Source& s) { append(text, "%d", s.settings->pdId + 1); },
     readNumber<&Record::driveId>},
    {"<WriteCache>",
     [](BlockText* text, const Source& s) { append(text, "%s", enableText(s.settings->writeCache)); },
     readFlag<&Record::writeCache>},
    // Compatibility: "not supported" reads back as disabled; its second word is skipped as an unknown key.
    {"<TCQEnable>",
     [](BlockText* text, const Source& s) {
         append(text, "%s", featureText(s.settings->tcqSupported, s.settings->tcqEnabled));
     },
     readFlag<&Record::tcq>},
    {"<NCQEnable>",
     [](BlockText* text, const Source& s) {
         append(text, "%s", featureText(s.settings->ncqSupported, s.settings->ncqEnabled));
     },
     readFlag<&Record::ncq>},
};

int PDSettingsToBuffer(int controller, const PhyDrvSettings* settings, char* text) {
    writeBlock<Source, Record>(keys, {controller, settings}, text);
    return 0;
}

int GetPhyDrvConfig(std::FILE* file, PhyDrvConfigRecord* record) {
    readBlock<Source, Record>(keys, file, record);
    return 0;
}

void DisplayPhyDrvConfig(PhyDrvConfigRecord record) {
    openDisplay("Physical drive setting", record.setIndex);
    showNumber("Physical drive ID", record.driveId);
    showWord("Write cache mode", enableText(record.writeCache != 0));
    showWord("NCQ Enable", enableText(record.ncq));
    showWord("TCQ Enable", enableText(record.tcq));
    closeDisplay();
}
