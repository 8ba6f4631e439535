// ctrl -a mod: the positions of the ID and the settings text, every key, and no change unless the text is
// valid.
#include "adapter/controller.h"
#include "commands/controller.h"
#include "tests/mock_adapter.h"

using ControllerChange = MockAdapterTest;
using Words = std::vector<std::string>;

// The controller's settings: a unique number in each field, and a pattern that must be written back
// unchanged.
static ControllerSettings currentSettings() {
    ControllerSettings settings;
    std::memset(&settings, 0xA5, sizeof settings);
    settings.rebuildRate = 11;
    settings.syncRate = 12;
    settings.mpRate = 13;
    settings.initRate = 14;
    settings.migrateRate = 15;
    settings.autoRebuild = 1;
    settings.smartPollInterval = 16;
    settings.smartCheck = 1;
    settings.encPollInterval = 17;
    settings.rebuildPolicy = 1;
    return settings;
}

static ControllerQuery queryOf(std::uint32_t controller) {
    return {controller, 1, 0, {}};
}

static void expectRead(std::uint32_t controller) {
    expectCall("q5_getControllerSettings", queryFor(controller, queryOf(controller), 88),
               bytesOf(currentSettings()));
}

static void expectWritten(std::uint32_t controller, const ControllerSettings& settings, int result = 0) {
    expectCall(
        "q5_setControllerSettings",
        bytesOf(hbaAddress(controller), std::uint32_t{0}, queryOf(controller), settings, std::uint32_t{88}),
        {}, result);
}

// The text is accepted and the record is written back with these settings.
static void expectChange(const std::string& text, const ControllerSettings& settings) {
    expectRead(0);
    expectWritten(0, settings);
    expectOutcome(run(SetControllerSettings, {"ctrl", "-a", "mod", "-s", text}), 0, "");
}

// The text is rejected after the settings are read, and nothing is written.
static void expectFault(const std::string& text, const std::string& output) {
    expectRead(0);
    expectOutcome(run(SetControllerSettings, {"ctrl", "-a", "mod", "-s", text}), 1, output);
}

static void expectRefused(const Words& words, int result, const std::string& output) {
    expectOutcome(run(SetControllerSettings, words), result, output);
}

namespace {
struct NumberKey {
    const char* key;
    std::uint8_t ControllerSettings::*field;
    const char* outOfRange;
};
struct SwitchKey {
    const char* key;
    std::uint8_t ControllerSettings::*field;
};
} // namespace

static const NumberKey numberKeys[] = {
    {"rebuildrate", &ControllerSettings::rebuildRate, "rebuild rate is out of range!\n"},
    {"syncrate", &ControllerSettings::syncRate, "syncrate is out of range!\n"},
    {"initrate", &ControllerSettings::initRate, "initrate is out of range!\n"},
    {"migraterate", &ControllerSettings::migrateRate, "migraterate is out of range!\n"},
    {"mprate", &ControllerSettings::mpRate, "mprate is out of range!\n"},
    {"smartpoll", &ControllerSettings::smartPollInterval, "smartpoll is out of range!\n"},
    {"encpoll", &ControllerSettings::encPollInterval, "encpoll is out of range!\n"},
};
static const SwitchKey switchKeys[] = {
    {"smart", &ControllerSettings::smartCheck},
    {"autorebuild", &ControllerSettings::autoRebuild},
    {"rebuildpolicy", &ControllerSettings::rebuildPolicy},
};
static const char incorrect[] = "Incorrect parameters!\n";

TEST_F(ControllerChange, StoresNumbersFrom1To255) {
    for (const NumberKey& row : numberKeys) {
        for (const int number : {1, 128, 255}) {
            ControllerSettings settings = currentSettings();
            settings.*row.field = static_cast<std::uint8_t>(number);
            expectChange(std::string(row.key) + "=" + std::to_string(number), settings);
        }
    }
}

TEST_F(ControllerChange, RejectsNumbersOutOfRange) {
    for (const NumberKey& row : numberKeys)
        for (const char* value : {"=0", "=256", "=-1", "=100000", "=", "=x", "==5"})
            expectFault(std::string(row.key) + value, std::string(row.outOfRange) + incorrect);
}

TEST_F(ControllerChange, ReadsTheNumberAtTheStartOfTheValue) {
    ControllerSettings settings = currentSettings();
    settings.rebuildRate = 7;
    for (const char* text : {"rebuildrate=7x", "rebuildrate= 7", "rebuildrate=+7", "rebuildrate=7=9"})
        expectChange(text, settings);
}

TEST_F(ControllerChange, RejectsMissingNumberSilently) {
    for (const NumberKey& row : numberKeys)
        expectFault(row.key, incorrect);
}

TEST_F(ControllerChange, StoresSwitches) {
    for (const SwitchKey& row : switchKeys) {
        ControllerSettings settings = currentSettings();
        settings.*row.field = 0;
        expectChange(std::string(row.key) + "=disable", settings);
        settings.*row.field = 1;
        expectChange(std::string(row.key) + "=enable", settings);
    }
}

TEST_F(ControllerChange, FindsSwitchWordAnywhereInTheItem) {
    ControllerSettings settings = currentSettings();
    settings.smartCheck = 0;
    for (const char* text : {"smart=disabled", "smart disable", "disablesmart", "smart=notdisable"})
        expectChange(text, settings);
    settings.smartCheck = 1;
    expectChange("smart=disable or enable", settings);
}

TEST_F(ControllerChange, RejectsInvalidSwitch) {
    for (const SwitchKey& row : switchKeys)
        for (const char* value : {"=on", "=1", "=", ""})
            expectFault(std::string(row.key) + value, incorrect);
}

TEST_F(ControllerChange, IgnoresCase) {
    ControllerSettings settings = currentSettings();
    settings.smartCheck = 0;
    settings.encPollInterval = 9;
    expectChange("SMART=Disable,EncPoll=9", settings);
    expectRead(0);
    expectWritten(0, settings);
    expectOutcome(run(SetControllerSettings, {"CTRL", "-A", "MOD", "-S", "SMART=DISABLE,ENCPOLL=9"}), 0, "");
}

TEST_F(ControllerChange, DistinguishesSmartpollFromSmart) {
    ControllerSettings settings = currentSettings();
    settings.smartPollInterval = 10;
    settings.smartCheck = 0;
    expectChange("smartpoll=10,smart=disable", settings);
    expectChange("smart=disable,smartpoll=10", settings);
}

TEST_F(ControllerChange, UsesTheFirstMatchingKeyOfTheTable) {
    ControllerSettings settings = currentSettings();
    settings.rebuildRate = 5;
    expectChange("smart encpoll rebuildrate=5", settings);
    settings = currentSettings();
    settings.syncRate = 6;
    expectChange("initrate syncrate=6", settings);
    settings = currentSettings();
    settings.smartCheck = 0;
    expectChange("rebuildpolicy autorebuild smart=disable", settings);
}

TEST_F(ControllerChange, AcceptsTheTextOfAnImport) {
    ControllerSettings settings = currentSettings();
    settings.smartCheck = 1;
    settings.autoRebuild = 0;
    settings.smartPollInterval = 21;
    settings.encPollInterval = 22;
    settings.rebuildRate = 23;
    settings.syncRate = 24;
    settings.initRate = 25;
    settings.migrateRate = 26;
    settings.mpRate = 27;
    settings.rebuildPolicy = 0;
    expectChange("smart=enable,autorebuild=disable,smartpoll=21,encpoll=22,rebuildrate=23,syncrate=24,"
                 "initrate=25,migraterate=26,mprate=27,rebuildpolicy=disable",
                 settings);
}

TEST_F(ControllerChange, UsesTheLastOfRepeatedItems) {
    ControllerSettings settings = currentSettings();
    settings.syncRate = 2;
    expectChange("syncrate=1,syncrate=2", settings);
}

TEST_F(ControllerChange, AcceptsBlanksInItems) {
    ControllerSettings settings = currentSettings();
    settings.autoRebuild = 0;
    settings.smartPollInterval = 30;
    expectChange("autorebuild=disable, smartpoll=30", settings);
}

TEST_F(ControllerChange, ContinuesAfterErrorsAndReportsEachRange) {
    expectFault("rebuildrate=0,smart=on,syncrate=1,encpoll=999,mprate=0",
                std::string("rebuild rate is out of range!\n"
                            "encpoll is out of range!\n"
                            "mprate is out of range!\n") +
                    incorrect);
}

TEST_F(ControllerChange, AbortsAtUnknownItem) {
    expectFault("volume=11", "Invalid parameters for \"ctrl\"!\n");
    expectFault("syncrate=5,volume=11,mprate=0", "Invalid parameters for \"ctrl\"!\n");
    expectFault("mprate=0,smart=on,volume=11,syncrate=0", "mprate is out of range!\n"
                                                          "Invalid parameters for \"ctrl\"!\n");
}

TEST_F(ControllerChange, RejectsEmptyItemAsUnknown) {
    for (const char* text : {"", ",", "syncrate=5,", ",syncrate=5", "syncrate=5,,mprate=5", " "})
        expectFault(text, "Invalid parameters for \"ctrl\"!\n");
}

TEST_F(ControllerChange, AcceptsTextOfMaximumLength) {
    ControllerSettings settings = currentSettings();
    settings.rebuildRate = 9;
    expectChange("rebuildrate=" + std::string(243, '0') + "9", settings); // 256 characters
}

TEST_F(ControllerChange, RequiresMoreThanFourWords) {
    for (const char* line : {"ctrl", "ctrl mod", "ctrl -a mod", "ctrl -a mod -s", "ctrl -a mod -i"})
        expectRefused(splitWords(line), 2, "Invalid numbers of parameter in command \"ctrl -a mod\" \n");
}

TEST_F(ControllerChange, RequiresMoreThanSixWordsWithAnId) {
    for (const char* line : {"ctrl -a mod -i 0", "ctrl -a mod -i x", "ctrl -a mod -I 0 -s"})
        expectRefused(splitWords(line), 2, "Invalid numbers of parameter in command \"ctrl -a mod\"\n");
}

TEST_F(ControllerChange, ChecksTheIdBeforeTheSettings) {
    expectRefused(splitWords("ctrl -a mod -i x -t y"), 6, "Invalid controller ID 'x' specified\n");
    expectRefused(splitWords("ctrl -a mod -i x -s smart=on"), 6, "Invalid controller ID 'x' specified\n");
    expectRefused(splitWords("ctrl -a mod -i 1 -t y"), 1, "Invalid parameters defined\n");
}

TEST_F(ControllerChange, ExpectsSettingsAfterTheActionOrTheId) {
    for (const char* line : {"ctrl -a mod -t y", "ctrl -a mod -v -s syncrate=5", "ctrl mod -s syncrate=5 x",
                             "ctrl -a mod syncrate=5 -s"})
        expectRefused(splitWords(line), 1, "Invalid parameters defined\n");
}

TEST_F(ControllerChange, IgnoresWordsAfterTheSettings) {
    ControllerSettings settings = currentSettings();
    settings.syncRate = 5;
    for (const char* line : {"ctrl -a mod -s syncrate=5 -i 7 -x", "ctrl -a mod -s syncrate=5 -s mprate=0"}) {
        expectRead(0);
        expectWritten(0, settings);
        expectOutcome(run(SetControllerSettings, splitWords(line)), 0, "");
    }
}

TEST_F(ControllerChange, ChangesTheSpecifiedController) {
    ControllerSettings settings = currentSettings();
    settings.syncRate = 5;
    for (const std::uint32_t controller : {1u, 65536u, 4294967295u}) {
        expectRead(controller);
        expectWritten(controller, settings);
        expectOutcome(run(SetControllerSettings,
                          {"ctrl", "-a", "mod", "-i", std::to_string(controller), "-s", "syncrate=5"}),
                      0, "");
    }
}

TEST_F(ControllerChange, IgnoresResultsOfCalls) {
    ControllerSettings settings = {};
    settings.mpRate = 3;
    expectCall("q5_getControllerSettings", queryFor(0, queryOf(0), 88), {}, 1);
    expectWritten(0, settings, 1);
    expectOutcome(run(SetControllerSettings, splitWords("ctrl -a mod -s mprate=3")), 0, "");
}
