// cli-restore --from: controllers that have other IDs than in the backup.
#include "tests/restore/restore_fixture.h"

static void changeSerials(Json* controller, const std::string& letter) {
    for (Json& drive : (*controller)["drives"])
        drive["serial"] = letter + drive["serial"].get<std::string>().substr(1);
}

// The second controller has other drives and neither logical drives nor spares.
struct RestoreRenumbered : Restore {
    void SetUp() override {
        Restore::SetUp();
        Json second = controller();
        blank(&second);
        changeSerials(&second, "T");
        second["rates"] = controller()["rates"];
        world["controllers"].push_back(second);
        session.useWorld(world.dump());
        ASSERT_LE(backup().status, 1);
    }
    void renumber() {
        std::swap(world["controllers"][0], world["controllers"][1]);
        session.useWorld(world.dump());
        cli({"ctrl"});
    }
    // With and without --apply, and nothing is changed.
    void expectPrevented(const std::string& id, const std::string& reason) {
        const std::string before = session.worldText();
        for (const Words& words : {Words{}, Words{"--apply"}})
            EXPECT_EQ(restore(words, id), (ProcessOutcome{4, "prevented: " + reason + "\n", ""}));
        EXPECT_EQ(session.worldText(), before);
    }
};

TEST_F(RestoreRenumbered, AsksWhichControllerIsMeant) {
    renumber();
    expectPrevented("0", "this controller has drives of controller 1 of the backup, but none of controller "
                         "0; use --from 1, or --from 0 if that one is meant nevertheless");
    expectPrevented("1", "this controller has drives of controller 0 of the backup, but none of controller "
                         "1; use --from 0, or --from 1 if that one is meant nevertheless");
}

TEST_F(RestoreRenumbered, RestoresTheControllerThatIsNamed) {
    renumber();
    for (const auto& [id, from] : {std::pair{"0", "1"}, std::pair{"1", "0"}})
        EXPECT_EQ(restore({"--from", from}, id), (ProcessOutcome{0, "There is nothing to do.\n", ""}));
    ASSERT_EQ(cli({"ctrl", "-a", "mod", "-i", "1", "-s", "syncrate=9"}).status, 0);
    const std::string step = "1. set controller 1: sync rate 102\n",
                      end = "Controller 1 is as it was saved.\n";
    EXPECT_EQ(restore({"--from", "0"}, "1"),
              (ProcessOutcome{1, step + "On a copy of these adapters:\n" + step + end, ""}));
    EXPECT_EQ(restore({"--from", "0", "--apply"}, "1"), (ProcessOutcome{0, step + end, ""}));
    EXPECT_EQ(restore({"--from", "0"}, "1").out, "There is nothing to do.\n");
}

// Settings that cannot be read now are no step on the copy either.
TEST_F(RestoreRenumbered, CopiesTheControllerWithItsPresentID) {
    ASSERT_EQ(cli({"buzz", "-a", "disable", "-i", "0"}).status, 0);
    ASSERT_LE(backup().status, 1);
    world = Json::parse(session.worldText());
    renumber();
    ASSERT_EQ(cli({"ctrl", "-a", "mod", "-i", "1", "-s", "syncrate=9"}).status, 0);
    ASSERT_EQ(q5sim({"refuse", "q5_getBuzzerStatus"}).status, 0);
    const ProcessOutcome outcome = restore({"--from", "0"}, "1");
    EXPECT_EQ(outcome.status, 1) << outcome;
    EXPECT_TRUE(outcome.out.ends_with("On a copy of these adapters:\n"
                                      "1. set controller 1: sync rate 102\n"
                                      "Controller 1 is as it was saved.\n"))
        << outcome;
}

// The drives of the other controller are not touched, but its settings are.
TEST_F(RestoreRenumbered, DoesNotDoubtTheControllerThatIsNamed) {
    renumber();
    ASSERT_EQ(cli({"ctrl", "-a", "mod", "-i", "1", "-s", "syncrate=9"}).status, 0);
    const ProcessOutcome outcome = restore({"--from", "1"}, "1");
    EXPECT_EQ(outcome.status, 1) << outcome;
    EXPECT_EQ(outcome.out.rfind("1. set controller 1: sync rate 102", 0), 0u) << outcome;
    EXPECT_NE(outcome.out.find("note: drive 1 is another drive; its settings stay\n"), std::string::npos);
}

// An adapter without known drives was added before it.
TEST_F(RestoreRenumbered, FindsTheDrivesAtAnotherController) {
    Json added = world["controllers"][1];
    changeSerials(&added, "U");
    world["controllers"].insert(world["controllers"].begin(), added);
    session.useWorld(world.dump());
    cli({"ctrl"});
    expectPrevented("0", "the drives of controller 0 of the backup are at controller 1 now; use -i 1 --from "
                         "0, or --from 0 if this controller is meant nevertheless");
    expectPrevented("2", "this controller has drives of controller 1 of the backup, which has no controller "
                         "2; use --from 1");
    EXPECT_EQ(restore({"--from", "1"}, "2").out, "There is nothing to do.\n");
}

// A single one with its serial identifies it; with none anywhere there is nothing to go by.
TEST_F(RestoreRenumbered, AcceptsControllersWithReplacedDrives) {
    Json replaced = world;
    replaced["controllers"][0]["drives"][1]["serial"] = "S9999";
    replaced["controllers"][0]["drives"][2]["serial"] = "T0001";
    replaced["controllers"][1]["drives"][0]["serial"] = "S0003";
    session.useWorld(replaced.dump());
    EXPECT_EQ(restore({"--drives", "2=2,3=3"}).out.find("use --from"), std::string::npos);
    EXPECT_EQ(restore({}, "1").out.find("use --from"), std::string::npos);
    for (Json& each : world["controllers"]) {
        blank(&each);
        changeSerials(&each, "V");
    }
    session.useWorld(world.dump());
    EXPECT_EQ(restore({"--apply", "--drives", "1=1,2=2,3=3"}).status, 0);
    EXPECT_EQ(restore({"--apply"}, "1").status, 0);
}

TEST_F(RestoreRenumbered, KeepsALogForEachControllerOfTheBackup) {
    renumber();
    ASSERT_EQ(restore({"--from", "0", "--apply"}, "1").status, 0);
    const std::string log = newest() + ".restore-1.log";
    EXPECT_NE(content(log).find(" controller=0->1 drives=\n"), std::string::npos) << content(log);
    EXPECT_EQ(restore({"--from", "0", "--apply"}, "1").status, 0);
    EXPECT_EQ(
        restore({"--from", "1", "--apply"}, "1"),
        (ProcessOutcome{
            3, "", "cli-restore: " + log + " is the log of a restore of another backup or controller\n"}));
}

TEST_F(RestoreRenumbered, RefusesAControllerThatWasNotSaved) {
    EXPECT_EQ(restore({"--from", "7"}),
              (ProcessOutcome{3, "", "cli-restore: the backup has no controller 7\n"}));
    EXPECT_EQ(
        restore({"--from", "x"}),
        (ProcessOutcome{2, "", "cli-restore: \"x\" is not a controller ID\nTry \"cli-restore --help\".\n"}));
}
