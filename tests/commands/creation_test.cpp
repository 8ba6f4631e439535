// Creation of logical drives: parsing the words and the creation text into a request. Sending it is
// in creation_send_test.cpp.
#include "commands/creation.h"

#include "tests/commands/creation_request.h"

using Creation = MockAdapterTest;

static const std::string kCountOutcome =
    "2: Invalid number of parameters defined for \"logdrv -a add\" \"add\"!\n";
static const std::string kNoDriveOutcome = "2: No physical drive is defined!\n";
static const std::string kBadTextOutcome = "1: Incorrect parameters!\n";
static const std::string kNoNameOutcome = "2: Error: Logical drive name is not defined!\n";
static const std::string kNoLevelOutcome = "2: Error: Raid level is not defined!\n";
static const std::string kNoSizeOutcome = "2: Error: extent ID or the logical drive size is not defined!\n";
static const std::string kUnmatchedOutcome =
    "1: Error: number of extents and number of physical drives are not matched!\n";
static const std::string kParsedOutcome = "0: ";

// The output of the parser, and a command function that calls it.
static HbaAddress parsedAddress;
static std::uint32_t parsedSecond;
static CreateArrayRequest parsed;

static int parse(int wordCount, char** words) {
    std::memset(&parsedAddress, kFillPattern, sizeof parsedAddress);
    parsedSecond = 7;
    parsed = {};
    return PhraseCreateLogDrvArg(wordCount, words, &parsedAddress, &parsedSecond, &parsed);
}

// Parses a creation from drives 1 and 2.
static std::string outcomeOfText(const std::string& text) {
    return outcomeOf(parse, addWords({"-p", "1 2"}, text));
}

// The parser returned this request.
static void expectParsed(const CreateArrayRequest& request, const std::string& about) {
    EXPECT_EQ(bytesOf(parsed), bytesOf(request)) << about;
    EXPECT_EQ(parsedSecond, 0u) << about;
}

// The plain request with one field changed.
template <typename Field, typename Value>
static CreateArrayRequest with(Field CreateArrayRequest::*field, Value value) {
    CreateArrayRequest request = plainRequest();
    request.*field = static_cast<Field>(value);
    return request;
}

TEST_F(Creation, StartsFromDefaults) {
    EXPECT_EQ(outcomeOfText("name=a,raid=raid0,capacity=5"), kParsedOutcome);
    expectParsed(plainRequest(), "defaults");
    EXPECT_EQ(bytesOf(parsedAddress), Bytes(8, 0));
}

TEST_F(Creation, ReadsEveryItem) {
    const struct {
        const char* item;
        CreateArrayRequest request;
    } items[] = {
        {"raid=raid1", with(&CreateArrayRequest::raidLevel, 1)},
        {"raid=RAID5", with(&CreateArrayRequest::raidLevel, 5)},
        {"raid=raid10", with(&CreateArrayRequest::raidLevel, 16)},
        {"raid=raid50", with(&CreateArrayRequest::raidLevel, 80)},
        {"raid=RaidMF", with(&CreateArrayRequest::raidLevel, 96)},
        {"RAID = a raid1 set", with(&CreateArrayRequest::raidLevel, 1)},
        {"capacity=1", with(&CreateArrayRequest::capacity, 1)},
        {"Capacity= 12 MB", with(&CreateArrayRequest::capacity, 12)},
        {"capacity=-1", with(&CreateArrayRequest::capacity, 0xFFFFFFFFFFFFFFFF)},
        {"capacity=2147483648", with(&CreateArrayRequest::capacity, 2147483648)},
        {"capacity=5000000000", with(&CreateArrayRequest::capacity, 5000000000)},
        {"my capacity is=7=8", with(&CreateArrayRequest::capacity, 7)},
        {"sectorsize=512", plainRequest()},
        {"SectorSize=1024", with(&CreateArrayRequest::sectorSize, 1024)},
        {"sectorsize=2048", with(&CreateArrayRequest::sectorSize, 2048)},
        {"sectorsize=4096", with(&CreateArrayRequest::sectorSize, 4096)},
        {"stripe=32", with(&CreateArrayRequest::stripeSize, 32)},
        {"stripe=64", plainRequest()},
        {"STRIPE=128KB", with(&CreateArrayRequest::stripeSize, 128)},
        {"rounding=none", plainRequest()},
        {"rounding=GBB", with(&CreateArrayRequest::rounding, 1)},
        {"Rounding=10gbb", with(&CreateArrayRequest::rounding, 1)},
        {"init=none", plainRequest()},
        {"init=Quick", with(&CreateArrayRequest::initialization, 1)},
        {"INIT=background", with(&CreateArrayRequest::initialization, 4)},
        {"subarraycnt=2", plainRequest()},
        {"paritycnt=2", plainRequest()},
        {"ParityCnt=3", with(&CreateArrayRequest::parityCount, 3)},
        {"symmetric=0", plainRequest()},
        {"Symmetric=1", with(&CreateArrayRequest::symmetric, 1)},
        {"shift=5", with(&CreateArrayRequest::shift, 5)},
        {"Shift=-1", with(&CreateArrayRequest::shift, 65535)},
        {"shift=none", plainRequest()},
        {"shift=70000", with(&CreateArrayRequest::shift, 4464)},
        {"color=red", plainRequest()},
        {"", plainRequest()},
        {",,", plainRequest()},
    };
    for (const auto& item : items) {
        EXPECT_EQ(outcomeOfText(std::string("name=a,raid=raid0,capacity=5,") + item.item), kParsedOutcome)
            << item.item;
        expectParsed(item.request, item.item);
    }
}

TEST_F(Creation, UsesTheFirstMatchingKeyOfTheTable) {
    const struct {
        const char* item; // contains two adjacent keys of the table
        CreateArrayRequest request;
    } items[] = {
        {"raid name=a", plainRequest()},
        {"capacity raid=raid1", with(&CreateArrayRequest::raidLevel, 1)},
        {"sectorsize capacity=512", with(&CreateArrayRequest::capacity, 512)},
        {"stripe sectorsize=1024", with(&CreateArrayRequest::sectorSize, 1024)},
        {"rounding stripe=32", with(&CreateArrayRequest::stripeSize, 32)},
        {"init rounding=gbb", with(&CreateArrayRequest::rounding, 1)},
        {"subarraycnt init=back", with(&CreateArrayRequest::initialization, 4)},
        {"paritycnt subarraycnt=2", plainRequest()},
        {"symmetric paritycnt=3", with(&CreateArrayRequest::parityCount, 3)},
        {"shift symmetric=1", with(&CreateArrayRequest::symmetric, 1)},
    };
    for (const auto& item : items) {
        EXPECT_EQ(outcomeOfText(std::string("name=a,raid=raid0,capacity=5,") + item.item), kParsedOutcome)
            << item.item;
        expectParsed(item.request, item.item);
    }
    EXPECT_EQ(outcomeOfText("name=a,raid=raid0,capacity=5,paritycnt subarraycnt=3"), kBadTextOutcome);
    EXPECT_EQ(outcomeOfText("raid=raid0,capacity=5,name=capacity=9"), kParsedOutcome);
    EXPECT_STREQ(parsed.name, "capacity=9");
    EXPECT_EQ(parsed.capacity, 5u);
}

TEST_F(Creation, ReadsTheTextOfASavedConfiguration) {
    CreateArrayRequest request = plainRequest();
    std::memcpy(request.name, "Set 1", 6);
    request.raidLevel = 96;
    request.stripeSize = 128;
    request.capacity = 4294967296;
    request.initialization = 4;
    request.sectorSize = 1024;
    request.parityCount = 3;
    request.symmetric = 1;
    request.shift = 0xFFFE;
    EXPECT_EQ(
        outcomeOf(parse, {"logdrv", "-a", "add", "-i", "1", "-p", "1 2", "-z",
                          "name=Set 1,raid=RAIDMF,stripe=128,Capacity=4294967296,init=BACK,Sectorsize=1024,"
                          "ParityCnt=3,Symmetric=1,Shift=-2"}),
        kParsedOutcome);
    expectParsed(request, "parities");
    EXPECT_EQ(
        outcomeOfText("name=a,raid=RAID50,stripe=64,Capacity=5,init=NONE,Sectorsize=512, SubArrayCnt=2"),
        kParsedOutcome);
    expectParsed(with(&CreateArrayRequest::raidLevel, 80), "sub arrays");
    EXPECT_EQ(outcomeOfText("Name=a , RAID=raid5, Capacity=5"), kParsedOutcome);
    expectParsed(with(&CreateArrayRequest::raidLevel, 5), "blanks and capitals");
}

TEST_F(Creation, TrimsAndTruncatesNames) {
    const std::string letters(120, 'x'), blanks(70, ' ');
    const struct {
        std::string input, stored;
    } names[] = {
        {"a", "a"},
        {"  a b  ", "a b"},
        {"CamelCase=yes", "CamelCase=yes"},
        {letters.substr(0, 63), letters.substr(0, 63)},
        {letters.substr(0, 64), letters.substr(0, 63)},
        {letters, letters.substr(0, 63)},
        {"a" + blanks + "b", "a" + blanks.substr(0, 62)},
        {blanks + blanks + "a", "a"},
        {"a" + std::string(125, ' ') + "b", "a" + blanks.substr(0, 62)},
        {"a" + std::string(126, ' ') + "b", "a"}, // truncation at 127 characters leaves blanks to trim
    };
    for (const auto& name : names) {
        CreateArrayRequest request = plainRequest();
        std::memcpy(request.name, name.stored.c_str(), name.stored.size() + 1);
        EXPECT_EQ(outcomeOfText("capacity=5,raid=raid0,name=" + name.input), kParsedOutcome) << name.input;
        expectParsed(request, name.input);
    }
    EXPECT_EQ(outcomeOfText("capacity=5,raid=raid0,name=long one,name=a"), kParsedOutcome);
    expectParsed(plainRequest(), "the second name alone");
}

TEST_F(Creation, RejectsInvalidItemsAtTheEnd) {
    for (const char* item : {"name",          "raid",           "capacity",      "sectorsize",
                             "stripe",        "rounding",       "init",          "subarraycnt",
                             "paritycnt",     "symmetric",      "shift",         "name a",
                             "sectorsize=0",  "sectorsize=513", "sectorsize=x",  "sectorsize=8192",
                             "subarraycnt=1", "subarraycnt=3",  "subarraycnt=x", "subarraycnt=258",
                             "paritycnt=1",   "paritycnt=4",    "paritycnt=258", "symmetric=2",
                             "symmetric=-1",  "symmetric=256"}) {
        EXPECT_EQ(outcomeOfText(std::string("name=a,raid=raid0,capacity=5,") + item), kBadTextOutcome)
            << item;
        EXPECT_EQ(outcomeOfText(std::string(item) + ",name=a,raid=raid0,capacity=5"), kBadTextOutcome)
            << item;
    }
}

TEST_F(Creation, ReportsInvalidStripeSizeAndContinues) {
    for (const char* size : {"0", "16", "256", "512", "1024", "-64", "", "x"})
        EXPECT_EQ(outcomeOfText(std::string("name=a,raid=raid0,stripe=") + size + ",capacity=5"),
                  "1: Incorrect stripe size!\nIncorrect parameters!\n")
            << size;
    EXPECT_EQ(outcomeOfText("stripe=1,stripe=2"),
              "1: Incorrect stripe size!\nIncorrect stripe size!\nIncorrect parameters!\n");
    EXPECT_EQ(outcomeOfText("stripe=1,raid=no"),
              "1: Incorrect stripe size!\nUnknown RAID level 'no' specified!\n");
}

TEST_F(Creation, AbortsAtUnknownKeyword) {
    const struct {
        const char* item;
        const char* outcome;
    } items[] = {
        {"raid=zzz", "1: Unknown RAID level 'zzz' specified!\n"},
        {"raid= Raid 5 ", "1: Unknown RAID level ' Raid 5 ' specified!\n"},
        {"raid=", "1: Unknown RAID level '' specified!\n"},
        {"rounding=Off=x", "1: Unknown rounding scheme 'Off=x' specified!\n"},
        {"init=zzz", "1: Unknown initialization 'zzz' specified!\n"},
        {"init=fore", "1: "},
        {"Init=FOREGROUND", "1: "},
    };
    for (const auto& item : items) {
        EXPECT_EQ(outcomeOfText(std::string("name=a,raid=raid0,capacity=5,") + item.item), item.outcome);
        EXPECT_EQ(outcomeOfText(std::string("name,") + item.item + ",raid=other,stripe=1"), item.outcome);
    }
}

TEST_F(Creation, ChecksTheRequestInOrder) {
    EXPECT_EQ(outcomeOfText("stripe"), kBadTextOutcome);
    EXPECT_EQ(outcomeOfText(""), kNoNameOutcome);
    EXPECT_EQ(outcomeOfText("raid=raid1"), kNoNameOutcome);
    EXPECT_EQ(outcomeOfText("name=,raid=raid1,capacity=5"), kNoNameOutcome);
    EXPECT_EQ(outcomeOfText("name=   ,raid=raid1,capacity=5"), kNoNameOutcome);
    EXPECT_EQ(outcomeOfText("name=a"), kNoLevelOutcome);
    EXPECT_EQ(outcomeOfText("name=a,capacity=5"), kNoLevelOutcome);
    EXPECT_EQ(outcomeOfText("name=a,raid=raid0"), kNoSizeOutcome);
    EXPECT_EQ(outcomeOfText("name=a,raid=raid0,capacity=0"), kNoSizeOutcome);
    EXPECT_EQ(outcomeOfText("name=a,raid=raid0,capacity=lots"), kNoSizeOutcome);
    EXPECT_EQ(outcomeOf(parse, addWords({"-p", "1 2", "-e", ""}, "name=a,raid=raid0")), kNoSizeOutcome);
    for (const char* extents : {"0", "0 1 2"})
        EXPECT_EQ(outcomeOf(parse, addWords({"-p", "1 2", "-e", extents}, "name=a,raid=raid0")),
                  kUnmatchedOutcome);
}

TEST_F(Creation, ChecksTheWordCount) {
    for (const char* line :
         {"", "logdrv", "logdrv -a add", "logdrv -a add -p 1 -z", "logdrv -a add -p 1 -i 0",
          "logdrv -a add -p 1 -i 0 -z", "logdrv add -i 0 -p 1 -z raid=jbod", "logdrv -a add -p 1 -z -I"})
        EXPECT_EQ(outcomeOf(parse, line), kCountOutcome) << line;
}

TEST_F(Creation, ReadsOptions) {
    const std::string text = "raid=jbod";
    EXPECT_EQ(outcomeOf(parse, {"logdrv", "-a", "add", "-q", "1", "-z", text}), kUnknownOptionOutcome);
    EXPECT_EQ(outcomeOf(parse, addWords({"-i", "x", "-p", "1"}, text)),
              "6: Invalid controller ID 'x' specified\n");
    EXPECT_EQ(outcomeOf(parse, addWords({"-e", "1"}, text)), kNoDriveOutcome);
    EXPECT_EQ(outcomeOf(parse, addWords({"-p", ""}, text)), kNoDriveOutcome);
    EXPECT_EQ(outcomeOf(parse, addWords({"-p", "1", "-p", ""}, "stripe")), kNoDriveOutcome);
    EXPECT_EQ(
        outcomeOf(parse, {"logdrv", "-a", "add", "-Z", "x", "-P", "1", "-I", "65538", "-E", "4", "-z", text}),
        kParsedOutcome);
    EXPECT_EQ(bytesOf(parsedAddress), bytesOf(hbaAddress(2)));
    EXPECT_EQ(parsed.member[0].extent, 4u);
}

TEST_F(Creation, UsesTheLastWordAsTheText) {
    EXPECT_EQ(outcomeOf(parse, "logdrv -a add -z name=a,raid=raid0,capacity=5 -p 1"), kNoNameOutcome);
    EXPECT_EQ(outcomeOf(parse, "logdrv -a add -z raid=raid0 -p raid=jbod"), kParsedOutcome);
    EXPECT_EQ(outcomeOf(parse, "logdrv -a add -p 1 -e 0 -z", {"name=a,raid=raid0"}), kParsedOutcome);
    EXPECT_EQ(outcomeOf(parse, "logdrv -a add -p 1 -e 0 -z", {"name=a,raid=raid0,stripe"}), kBadTextOutcome);
    EXPECT_EQ(outcomeOf(parse, "logdrv -a add -p 1 -e 0 -z"), kNoNameOutcome);
}

TEST_F(Creation, SendsMembers) {
    const struct {
        const char* drives;
        const char* extents;
        std::vector<RequestMember> members;
    } creations[] = {
        {"1 2", "0", {{0, 0}, {0, 1}}},
        {"1 2", "7", {{7, 0}, {0, 1}}},
        {"3,1 8", "2 0 1", {{2, 2}, {0, 0}, {1, 7}}},
        {"4", "1 2 3", {{1, 3}}},
        {"0", "1", {{1, 0xFFFFFFFF}}},
        {"1, 2", "5", {{5, 0}, {0, 0xFFFFFFFF}, {0, 1}}},
        {"1 2 ", "5 6", {{5, 0}, {6, 1}}},
    };
    for (const auto& creation : creations) {
        CreateArrayRequest request = plainRequest();
        request.allocation = 0;
        request.memberCount = static_cast<std::uint8_t>(creation.members.size());
        request.member[1] = {};
        for (std::size_t i = 0; i < creation.members.size(); ++i)
            request.member[i] = creation.members[i];
        EXPECT_EQ(outcomeOf(parse, addWords({"-p", creation.drives, "-e", creation.extents},
                                            "name=a,raid=raid0,capacity=5")),
                  kParsedOutcome);
        expectParsed(request, creation.drives);
    }
}

TEST_F(Creation, ReplacesRepeatedLists) {
    CreateArrayRequest request = plainRequest();
    request.allocation = 0;
    request.member[0].extent = 9;
    EXPECT_EQ(outcomeOf(parse, addWords({"-p", "5 6 7", "-p", "1 2", "-e", "3 4 5", "-e", "9"},
                                        "name=a,raid=raid0,capacity=5")),
              kParsedOutcome);
    expectParsed(request, "one extent for two drives");
}

TEST_F(Creation, AcceptsMatchingExtentCountWithoutCapacity) {
    CreateArrayRequest request = plainRequest();
    request.allocation = 0;
    request.capacity = 0;
    request.member[0].extent = 3;
    request.member[1].extent = 4;
    EXPECT_EQ(outcomeOf(parse, addWords({"-p", "1 2", "-e", "3 4"}, "name=a,raid=raid0")), kParsedOutcome);
    expectParsed(request, "extents alone");
}

TEST_F(Creation, AcceptsSixteenMembers) {
    CreateArrayRequest request = plainRequest();
    request.allocation = 0;
    request.memberCount = 16;
    for (std::uint32_t i = 0; i < 16; ++i)
        request.member[i] = {i + 1, i};
    const std::string ids = "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20";
    EXPECT_EQ(outcomeOf(parse, addWords({"-p", ids, "-e", ids}, "name=a,raid=raid0,capacity=5")),
              kParsedOutcome);
    expectParsed(request, ids);
}

TEST_F(Creation, AcceptsJbodWithoutNameAndSize) {
    CreateArrayRequest request = plainRequest();
    request.raidLevel = 10;
    request.capacity = 0;
    request.allocation = 0;
    request.memberCount = 1;
    request.member[1] = {};
    EXPECT_EQ(outcomeOf(parse, addWords({"-p", "1"}, "name=a,raid=jbod")), kParsedOutcome);
    expectParsed(request, "without a size");
    EXPECT_EQ(outcomeOf(parse, addWords({"-p", "1"}, "capacity=100,name=a,raid=jbod")), kParsedOutcome);
    expectParsed(request, "with a size, which it does not get");
    request.name[0] = 0;
    EXPECT_EQ(outcomeOf(parse, addWords({"-p", "1"}, "raid=JBOD")), kParsedOutcome);
    expectParsed(request, "without a name");
    request.member[0].extent = 5;
    EXPECT_EQ(outcomeOf(parse, addWords({"-p", "1", "-e", "5 6"}, "raid=JBOD")), kParsedOutcome);
    expectParsed(request, "with extents, which are sent");
}
