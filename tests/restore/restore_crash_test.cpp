// cli-restore --apply that is killed or signaled: the same command, given again, completes it.
//
// By default a sample of the system calls is tried; with CRASH_TESTS=all every call.
#include <csignal>

#include "tests/restore/restore_fixture.h"

static constexpr int kNoTracing = 77, kNotReached = 78;

static bool isWholeRun() {
    const char* value = std::getenv("CRASH_TESTS");
    return value != nullptr && value == std::string("all");
}

struct RestoreCrash : Restore {
    std::string blanked, restored;
    int interrupted = 0, continued = 0;

    void SetUp() override {
        Restore::SetUp();
        blank(&controller());
        blanked = world.dump();
    }
    void putBack() {
        session.useWorld(blanked);
        std::filesystem::remove(session.path("log"));
    }
    ProcessOutcome inject(const std::string& fault, const std::string& call) {
        return runOther(CRASH_INJECTOR, {fault, call, CLI_RESTORE_REHEARSE, "-i", "0", "--apply", "--log",
                                         "log", newest() + ".cfg"});
    }
    int countCalls() {
        putBack();
        const std::string file = session.path("calls");
        if (inject("count", file).status == kNoTracing)
            return 0;
        restored = comparable();
        return std::atoi(readFile(file).c_str());
    }
    // The settings, drives and logical drives, with what creation starts ended.
    std::string comparable() {
        EXPECT_EQ(q5sim({"advance", "--until-idle"}).status, 0);
        const Json now = Json::parse(status())["controllers"][0];
        return Json{now["settings"], now["drives"], now["logicalDrives"]}.dump(1);
    }
    bool interruptEverywhere(const std::string& fault, int status, int sample) {
        const int calls = countCalls();
        const int step = isWholeRun() ? 1 : std::max(1, calls / sample);
        for (int call = 1; call <= calls; call += step) {
            SCOPED_TRACE(fault + " at call " + std::to_string(call) + " of " + std::to_string(calls));
            putBack();
            const ProcessOutcome outcome = inject(fault, std::to_string(call));
            EXPECT_TRUE(outcome.status == status || outcome.status == kNotReached || outcome.status == 0)
                << outcome;
            interrupted += outcome.status == status;
            const ProcessOutcome again = restore({"--apply", "--log", "log"});
            EXPECT_EQ(again.status, 0) << again;
            continued += again.out.rfind("Continues an unfinished restore", 0) == 0;
            EXPECT_EQ(comparable(), restored);
        }
        return calls > 0;
    }
};

TEST_F(RestoreCrash, ContinuesAfterAKill) {
    if (!interruptEverywhere("kill", 128 + SIGKILL, 40))
        GTEST_SKIP() << "programs cannot be traced here";
    EXPECT_GE(interrupted, 30);
    EXPECT_GT(continued, 0);
    RecordProperty("kills", interrupted);
}

// A signal is blocked until the step is done, checked and logged.
TEST_F(RestoreCrash, ContinuesAfterASignal) {
    if (!interruptEverywhere("signal:" + std::to_string(SIGINT), 128 + SIGINT, 40))
        GTEST_SKIP() << "programs cannot be traced here";
    EXPECT_GE(interrupted, 20);
    EXPECT_GT(continued, 0);
}
