// Behavior specific to the migrate command: the allowed levels, and the text and members of its start.
#include "commands/migrate.h"

#include "tests/commands/logdrv_records.h"

using Migrate = MockAdapterTest;
using Words = std::vector<std::string>;

static const std::string kStartedOutcome = "0: Migration is started on Array 3.\n";
static const std::string kLowerLevelOutcome =
    "1: Error: migrate only support from low level raid to high level raid\n";
static const std::string kCountOutcome = "1: Invalide parameter in \"migrate count\"!\n";
static const std::string kUnknownItemOutcome = "1: Invalid parameters for \"ctrl\"!\n";
static const std::string kBadTextOutcome = "1: Invalide parameter in \"migrate\"!\n";
static const std::string kIdsOutcome = "1: Control id and array id must be refer in \"migrate\"!\n";

// Drive 3, idle, with a level and a stripe size.
static LogDrvInfo driveAt(std::uint8_t raidLevel, std::uint32_t stripeBlocks = 64) {
    LogDrvInfo drive = driveWithActivities(0);
    drive.raidLevel = raidLevel;
    drive.stripeBlocks = stripeBlocks;
    return drive;
}

static void expectRequest(const MigrateRequest& request, int result = 0) {
    expectCall("q5_migrateHBAArray", bytesOf(hbaAddress(2), std::uint32_t{0}, request), {}, result);
}

// A request for drive 3 without members.
static MigrateRequest requestFor(std::uint16_t raidLevel, std::uint16_t stripeSize = 64,
                                 std::uint8_t subArrays = 0, std::uint8_t parities = 0) {
    MigrateRequest request = {};
    request.logDrvId = 3;
    request.raidLevel = raidLevel;
    request.stripeSize = stripeSize;
    request.subArrayCount = subArrays;
    request.parityCount = parities;
    return request;
}

// Starts a migration of drive 3 of controller 2 with this text after these options.
static std::string outcomeOfStart(const std::string& text, const Words& options = {},
                                  const Words& stale = {}) {
    Words words = {"migrate", "-a", "start", "-l", "3", "-i", "2"};
    words.insert(words.end(), options.begin(), options.end());
    words.insert(words.end(), {"-s", text});
    return outcomeOf(StartLogDrvMigrate, words, stale);
}

TEST_F(Migrate, RanksLevels) {
    const int ranks[][2] = {{0, 10},  {1, 20},  {3, 30},  {16, 40},  {95, 50}, {5, 60},
                            {80, 70}, {81, 80}, {85, 90}, {96, 100}, {10, 0},  {2, 0},
                            {255, 0}, {-1, 0},  {256, 0}, {97, 0},   {1000, 0}};
    for (const auto& [code, rank] : ranks)
        EXPECT_EQ(GetRaidLevelValue(code), rank) << code;
}

TEST_F(Migrate, RejectsLowerRanks) {
    const int upwards[] = {0, 1, 3, 16, 95, 5, 80, 81, 85, 96};
    for (int from = 0; from < 10; ++from)
        for (int to = 0; to < 10; ++to)
            EXPECT_EQ(IsAllowDoMigrate(upwards[from], upwards[to]), to >= from) << from << " to " << to;
    EXPECT_TRUE(IsAllowDoMigrate(10, 0));
    EXPECT_TRUE(IsAllowDoMigrate(10, 10));
    EXPECT_TRUE(IsAllowDoMigrate(10, 255));
    EXPECT_TRUE(IsAllowDoMigrate(255, 96));
    EXPECT_FALSE(IsAllowDoMigrate(0, 10));
    EXPECT_FALSE(IsAllowDoMigrate(0, 255));
}

TEST_F(Migrate, StartRequiresNineWords) {
    for (const char* line : {"", "migrate", "migrate -a start", "migrate -a start -l 3 -i 2",
                             "migrate -a start -l 3 -i 2 -s", "migrate start -l 3 -i 2 -s raid=raid5"})
        EXPECT_EQ(outcomeOf(StartLogDrvMigrate, line),
                  "2: Invalid number of parameters in command \"migrate -a start\"!\n")
            << line;
}

TEST_F(Migrate, ReadsLevelStripeAndCountFromTheText) {
    const struct {
        const char* text;
        std::uint8_t from;
        MigrateRequest request;
    } starts[] = {
        {"raid=raid5", 0, requestFor(5)},
        {"raid=RAID5", 0, requestFor(5)},
        {"raid=myRaid10x", 1, requestFor(16)},
        {"raid=raid5,stripe=128", 5, requestFor(5, 128)},
        {"stripe=128,raid=raid5", 0, requestFor(5, 128)},
        {"raid=raid5,stripe=32,stripe=0", 0, requestFor(5, 64)},
        {"raid=raid5,stripe= 32kb", 0, requestFor(5, 32)},
        {"raid=raid5,stripe=many", 0, requestFor(5, 64)},
        {"raid=raid1,raid=raid5", 0, requestFor(5)},
        {"raid=raid50,count=2", 5, requestFor(80, 64, 2, 0)},
        {"count=2,raid=raid50", 5, requestFor(80, 64, 2, 0)},
        {"raid=raidmf,count=2", 80, requestFor(96, 64, 0, 2)},
        {"raid=raidmf,count=3", 96, requestFor(96, 64, 0, 3)},
        {"raid=raid5,count=7", 0, requestFor(5)},
        {"raid=raid5,count=none", 0, requestFor(5)},
        {"raid=raid50,count=2a", 5, requestFor(80, 64, 2, 0)},
        {"raid=raid0", 10, requestFor(0)},
        {"raid=jbod", 10, requestFor(10)},
        {"my raid level=raid5,a stripe of=16", 0, requestFor(5, 16)},
        {"raidstripe=raid5", 0, requestFor(5)},
        {"stripe=16", 5, requestFor(5, 16)},
        {"count=9", 5, requestFor(5)},
        {"count=3", 96, requestFor(96, 64, 0, 3)},
        {"raid=stripe=raid5", 0, requestFor(5)},
        {"raid=raid5,stripe=65535", 0, requestFor(5, 65535)},
    };
    for (const auto& start : starts) {
        expectLookup(2, 3, driveAt(start.from));
        expectRequest(start.request);
        EXPECT_EQ(outcomeOfStart(start.text), kStartedOutcome) << start.text;
    }
}

TEST_F(Migrate, TruncatesTheStripeToTheRequest) {
    expectLookup(2, 3, driveAt(5, 70000));
    expectRequest(requestFor(5, 4464));
    EXPECT_EQ(outcomeOfStart("raid=raid5"), kStartedOutcome);
}

TEST_F(Migrate, RejectsLowerLevel) {
    const struct {
        std::uint8_t from;
        const char* text;
    } starts[] = {{5, "raid=raid1"},          {0, "raid=jbod"},   {96, "raid=raid50,count=2"},
                  {16, "raid=raid1,count=9"}, {5, "raid=raid10"}, {96, "raid=raid0"}};
    for (const auto& start : starts) {
        expectLookup(2, 3, driveAt(start.from));
        EXPECT_EQ(outcomeOfStart(start.text), kLowerLevelOutcome) << start.text;
    }
}

TEST_F(Migrate, RequiresACountThatFitsTheLevel) {
    const struct {
        std::uint8_t from;
        const char* text;
    } starts[] = {
        {5, "raid=raid50"},          {5, "raid=raid50,count=3"},         {5, "raid=raid50,count=1"},
        {5, "raid=raid50,count=-2"}, {5, "raid=raid50,count=two"},       {5, "raid=raidmf"},
        {5, "raid=raidmf,count=1"},  {5, "raid=raidmf,count=4"},         {96, "stripe=64"},
        {80, "stripe=64"},           {5, "raid=raid50,count=2,count=5"}, {5, "raid=raid50,count=258"}};
    for (const auto& start : starts) {
        expectLookup(2, 3, driveAt(start.from));
        EXPECT_EQ(outcomeOfStart(start.text), kCountOutcome) << start.text;
    }
}

TEST_F(Migrate, ContinuesAfterUnknownLevel) {
    expectLookup(2, 3, driveAt(0));
    EXPECT_EQ(outcomeOfStart("raid=raid 5"),
              "1: Unknown RAID level 'raid 5' specified!\n"
              "Error: migrate only support from low level raid to high level raid\n");
    expectLookup(2, 3, driveAt(10));
    expectRequest(requestFor(255));
    EXPECT_EQ(outcomeOfStart("raid=none"),
              "0: Unknown RAID level 'none' specified!\nMigration is started on Array 3.\n");
    EXPECT_EQ(outcomeOfStart("raid=,x=1"),
              "1: Unknown RAID level '' specified!\nInvalid parameters for \"ctrl\"!\n");
}

TEST_F(Migrate, AbortsAtUnknownItem) {
    for (const char* text : {"RAID=raid5", "raid=raid5,Stripe=128", "raid=raid50,COUNT=2", "name=x", "x=raid",
                             "", "raid=raid5,", ",raid=raid5", "raid=raid5,,stripe=64", "raid,x", "=raid"})
        EXPECT_EQ(outcomeOfStart(text), kUnknownItemOutcome) << text;
}

TEST_F(Migrate, RejectsItemWithoutEqualsSign) {
    for (const char* text :
         {"raid", "raid raid5", "raid=raid5,stripe", "count", "stripe,raid=raid5", "raid=raid5,count 2"})
        EXPECT_EQ(outcomeOfStart(text), kBadTextOutcome) << text;
}

TEST_F(Migrate, RequiresBothIds) {
    for (const char* line :
         {"-l 3 -l 3", "-i 2 -i 2", "-p 1 -e 0", "-l 2147483648 -i 2", "-l 3 -i 4294967295"})
        EXPECT_EQ(outcomeOf(StartLogDrvMigrate, std::string("migrate -a start ") + line + " -s raid=raid5"),
                  kIdsOutcome)
            << line;
}

TEST_F(Migrate, AcceptsIdsOfZero) {
    LogDrvInfo drive = driveWithActivities(0, 0);
    drive.raidLevel = 0;
    MigrateRequest request = requestFor(5, 32);
    request.logDrvId = 0;
    expectLookup(0, 0, drive);
    expectCall("q5_migrateHBAArray", bytesOf(hbaAddress(0), std::uint32_t{0}, request));
    EXPECT_EQ(outcomeOf(StartLogDrvMigrate, "migrate -a start -l 0 -i 0 -s raid=raid5,stripe=32"),
              "0: Migration is started on Array 0.\n");
}

TEST_F(Migrate, ChecksOptionsThenTextThenIdsThenTheDrive) {
    EXPECT_EQ(outcomeOf(StartLogDrvMigrate, "migrate -a start -q 1 -l x -s raid"), kUnknownOptionOutcome);
    EXPECT_EQ(outcomeOf(StartLogDrvMigrate, "migrate -a start -l 3 -l 3 -s raid"), kBadTextOutcome);
    EXPECT_EQ(outcomeOf(StartLogDrvMigrate, "migrate -a start -l 3 -l 3 -s x"), kUnknownItemOutcome);
    LogDrvInfo busy = driveAt(5);
    busy.activityStatus = 8;
    expectLookup(2, 3, busy);
    EXPECT_EQ(outcomeOfStart("raid=raid0"), kLowerLevelOutcome);
    expectLookup(2, 3, busy);
    EXPECT_EQ(outcomeOfStart("raid=raidmf"), kCountOutcome);
    expectLookup(2, 3, busy);
    EXPECT_EQ(outcomeOfStart("raid=raid5"), kSilentSuccess);
}

// A request for RAID5 with these members.
static MigrateRequest requestWith(const std::vector<RequestMember>& members) {
    MigrateRequest request = requestFor(5);
    request.memberCount = static_cast<std::uint16_t>(members.size());
    for (std::size_t i = 0; i < members.size(); ++i)
        request.member[i] = members[i];
    return request;
}

TEST_F(Migrate, SendsMembers) {
    const struct {
        Words options;
        std::vector<RequestMember> members;
    } starts[] = {
        {{"-p", "1 4,6", "-e", "0 2 1"}, {{0, 0}, {2, 3}, {1, 5}}},
        {{"-P", "1 4 6", "-E", "3"}, {{3, 0}, {0, 3}, {0, 5}}},
        {{"-p", "2"}, {{0, 1}}},
        {{"-p", "2", "-e", "5 6 7"}, {{5, 1}}},
        {{"-p", "0"}, {{0, 0xFFFFFFFF}}},
        {{"-p", "1, 2"}, {{0, 0}, {0, 0xFFFFFFFF}, {0, 1}}},
        {{"-e", "1 2"}, {}},
        {{"-p", "", "-e", ""}, {}},
        {{"-p", "1 2 3", "-p", "8"}, {{0, 7}}},
        {{"-p", "1 2", "-e", "3 4", "-e", "9"}, {{9, 0}, {0, 1}}},
    };
    for (const auto& start : starts) {
        expectLookup(2, 3, driveAt(0));
        expectRequest(requestWith(start.members));
        EXPECT_EQ(outcomeOfStart("raid=raid5", start.options), kStartedOutcome)
            << testing::PrintToString(start.options);
    }
}

TEST_F(Migrate, AcceptsSixteenMembers) {
    std::vector<RequestMember> members;
    for (std::uint32_t i = 0; i < 16; ++i)
        members.push_back({i + 1, i});
    expectLookup(2, 3, driveAt(0));
    expectRequest(requestWith(members));
    const std::string ids = "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20";
    EXPECT_EQ(outcomeOfStart("raid=raid5", {"-p", ids, "-e", ids}), kStartedOutcome);
}

TEST_F(Migrate, UsesTheLastWordAsTheText) {
    EXPECT_EQ(outcomeOf(StartLogDrvMigrate, "migrate -a start -s raid=raid5 -l 3 -i 2"), kUnknownItemOutcome);
    // The last value is missing, so the next slot is both the list and the text.
    std::vector<RequestMember> members(9, {0, 0xFFFFFFFF});
    members.push_back({0, 4});
    expectLookup(2, 3, driveAt(0));
    expectRequest(requestWith(members));
    EXPECT_EQ(outcomeOf(StartLogDrvMigrate, "migrate -a start -i 2 -l 3 -s x -p", {"raid=raid5"}),
              kStartedOutcome);
}
