// The settings in a plan.
#include <set>

#include "snapshot/fields.h"
#include "tests/restore/plan_fixture.h"

// Sets each number of the saved settings to 1 in turn: the plan has a step or a note for it.
template <typename Record>
static void expectEverySettingPlanned(Record& (*settings)(Controller&), const std::set<std::string>& fixed) {
    for (const Field& field : recordType<Record>().fields) {
        if ((field.kind != FieldKind::unsignedNumber && field.kind != FieldKind::signedNumber) ||
            fixed.count(field.name) != 0)
            continue;
        Controller saved = controllerWithMirror();
        setNumberAt(&settings(saved), field, 0, 1);
        const Plan plan = makePlan(saved, controllerWithMirror(), {});
        EXPECT_EQ(plan.steps.size() + plan.notes.size(), 1u) << field.name;
    }
}

TEST(Plan, CoversEverySetting) {
    expectEverySettingPlanned<ControllerSettings>(
        [](Controller& controller) -> ControllerSettings& { return *controller.settings; }, {});
    expectEverySettingPlanned<PhyDrvSettings>(
        [](Controller& controller) -> PhyDrvSettings& { return *controller.drives[0].settings; },
        {"pdId", "tcqSupported", "ncqSupported"}); // properties of the drive
    expectEverySettingPlanned<LogDrvSettings>(
        [](Controller& controller) -> LogDrvSettings& { return *controller.logicalDrives[0].settings; }, {});
}

TEST(Plan, NotesWhatNoCommandSets) {
    Controller saved = controllerWith(1, 40960), now = saved;
    saved.settings->syncRate = 0;
    now.settings->syncRate = 5;
    saved.drives[0].settings->smartCheck = 1;
    saved.drives[0].settings->ncqEnabled = 1;
    const Plan plan = makePlan(saved, now, {});
    EXPECT_EQ(textsOf(plan), Texts());
    EXPECT_EQ(plan.notes, (Texts{"the sync rate was 0, which cannot be set", "drive 1 does not support NCQ",
                                 "the SMART check of drive 1 is set by no command; it was enabled"}));
}

// Drive 2 takes the place of drive 1: it cannot have the settings of both.
TEST(Plan, GivesADriveTheSettingsOfOneOnly) {
    Controller saved = controllerWith(2, 40960);
    Controller now = saved;
    saved.drives[0].settings->writeCache = 1;
    now.drives[1].info.serial[0] = 'X';
    const Plan plan = makePlan(saved, now, {{1, 2}});
    EXPECT_EQ(textsOf(plan), (Texts{"set drive 2: write cache enable"}));
    EXPECT_EQ(plan.notes,
              (Texts{"drive 2 takes the place of another one; its own settings are not restored"}));
}

// The option belongs to the model: two drives of other models were replaced by two of one.
TEST(Plan, GivesAModelTheSpeedOfItsFirstDrive) {
    Controller saved = controllerWith(2, 40960), now = saved;
    saved.drives[1].info.model[0] = 'X';
    saved.drives[0].speed3Gb = 0;
    saved.drives[1].speed3Gb = now.drives[0].speed3Gb = now.drives[1].speed3Gb = 1;
    EXPECT_EQ(textsOf(makePlan(saved, now, {})), (Texts{"set the 3 Gb/s option of drives like drive 1: 0"}));
    now.drives[0].speed3Gb = now.drives[1].speed3Gb = 0;
    EXPECT_EQ(textsOf(makePlan(saved, now, {})), Texts());
}

// Unknown here, or in the backup. An adapter that has none never reports a state.
TEST(Plan, NotesAnUnreadableBuzzer) {
    const Controller known = controllerWith(1, 40960);
    Controller unknown = known;
    unknown.buzzer.reset();
    const Texts note = {"the settings of the buzzer could not be read; they stay"};
    EXPECT_EQ(makePlan(known, unknown, {}).notes, note);
    EXPECT_EQ(makePlan(unknown, known, {}).notes, note);
    EXPECT_EQ(makePlan(unknown, unknown, {}).notes, Texts());
    EXPECT_EQ(textsOf(makePlan(known, unknown, {})), Texts());
}

// Once for each model.
TEST(Plan, NotesAnUnreadableSpeed) {
    Controller known = controllerWith(3, 40960);
    known.drives[2].info.model[0] = 'X';
    const Controller unknown = known;
    for (Drive& drive : known.drives)
        drive.speed3Gb = 1;
    const Texts notes = {
        "the settings of the 3 Gb/s option of drives like drive 1 could not be read; they stay",
        "the settings of the 3 Gb/s option of drives like drive 3 could not be read; they stay"};
    EXPECT_EQ(makePlan(known, unknown, {}).notes, notes);
    EXPECT_EQ(makePlan(unknown, known, {}).notes, notes);
    EXPECT_EQ(makePlan(unknown, unknown, {}).notes, Texts());
    EXPECT_EQ(textsOf(makePlan(known, unknown, {})), Texts());
}

// The first drive was of a model whose option could not be read.
TEST(Plan, TakesTheSpeedOfAModelFromTheFirstDriveThatHasIt) {
    Controller saved = controllerWith(2, 40960), now = saved;
    saved.drives[0].info.model[0] = 'X';
    saved.drives[1].speed3Gb = 0;
    now.drives[0].speed3Gb = now.drives[1].speed3Gb = 1;
    const Plan plan = makePlan(saved, now, {});
    EXPECT_EQ(textsOf(plan), (Texts{"set the 3 Gb/s option of drives like drive 2: 0"}));
    EXPECT_EQ(plan.notes, Texts());
}
