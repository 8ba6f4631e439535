// The records' fields as data. That every byte has a row is proven when they are compiled.
#include "snapshot/fields.h"

#include <gtest/gtest.h>

#include <cstring>

#include "snapshot/words.h"

TEST(Fields, ComeFromTheRecords) {
    const Field* serial = findField(recordType<PhyDrvInfo>(), "serial");
    ASSERT_NE(serial, nullptr);
    EXPECT_EQ(serial->offset, 86u);
    EXPECT_EQ(serial->size, 24u);
    EXPECT_EQ(serial->kind, FieldKind::text);
    const Field* sensor = findField(recordType<EnclosureStatus>(), "sensor");
    ASSERT_NE(sensor, nullptr);
    EXPECT_EQ(sensor->offset, 68u);
    EXPECT_EQ(sensor->size, 8u);
    EXPECT_EQ(sensor->count, 6u);
    EXPECT_EQ(sensor->record, &recordType<EnclosureSensor>());
    EXPECT_EQ(findField(recordType<BatteryInfo>(), "header")->kind, FieldKind::header);
    EXPECT_EQ(findField(recordType<BatteryInfo>(), "reserved64")->kind, FieldKind::reserved);
    EXPECT_EQ(findField(recordType<BatteryInfo>(), "nothing"), nullptr);
}

TEST(Fields, ReadAndWriteNumbersOfEverySize) {
    LogDrvInfo drive = {};
    const RecordType& type = recordType<LogDrvInfo>();
    drive.shift = -3;
    drive.sectorCount = 0xFFFFFFFFFFFFFFFF;
    EXPECT_EQ(numberAt(&drive, *findField(type, "shift"), 0), -3);
    EXPECT_EQ(static_cast<std::uint64_t>(numberAt(&drive, *findField(type, "sectorCount"), 0)),
              0xFFFFFFFFFFFFFFFFu);
    setNumberAt(&drive, *findField(type, "memberIds"), 31, 200);
    EXPECT_EQ(drive.memberIds[31], 200);
    EXPECT_EQ(drive.parityCount, 0);
    setNumberAt(&drive, *findField(type, "shift"), 0, -32768);
    EXPECT_EQ(drive.shift, -32768);
    EXPECT_EQ(drive.subArrayCount, 0);
}

TEST(Fields, TextEndsWithItsField) {
    PhyDrvInfo drive = {};
    const RecordType& type = recordType<PhyDrvInfo>();
    std::memset(drive.model, 'M', sizeof drive.model);
    std::memset(drive.serial, 'S', sizeof drive.serial);
    EXPECT_EQ(textAt(&drive, *findField(type, "model")), std::string(22, 'M'));
    setTextAt(&drive, *findField(type, "model"), "short");
    EXPECT_EQ(textAt(&drive, *findField(type, "model")), "short");
    setTextAt(&drive, *findField(type, "model"), std::string(100, 'L'));
    EXPECT_EQ(textAt(&drive, *findField(type, "model")), std::string(22, 'L'));
    EXPECT_EQ(drive.serial[0], 'S');
}

TEST(Fields, CountedListsAreBounded) {
    PhyDrvInfo drive = {};
    const RecordType& type = recordType<PhyDrvInfo>();
    const Field& extent = *findField(type, "extent");
    drive.extentCount = 3;
    EXPECT_EQ(usedCount(type, &drive, extent), 3u);
    drive.extentCount = 255;
    EXPECT_EQ(usedCount(type, &drive, extent), 16u);
    EXPECT_EQ(usedCount(type, &drive, *findField(type, "heads")), 1u);
}

TEST(FieldWords, DescribeCodes) {
    const auto wordsFor = [](const RecordType& type, const char* field, std::int64_t value) {
        return wordsOf(type, *findField(type, field))->words(value);
    };
    using Words = std::vector<std::string>;
    EXPECT_EQ(wordsFor(recordType<BatteryInfo>(), "status", 0), Words{"no battery"});
    EXPECT_EQ(wordsFor(recordType<BatteryInfo>(), "status", 0x80), Words{"charging"});
    EXPECT_EQ(wordsFor(recordType<BatteryInfo>(), "status", 0x85), Words{"in an unknown state"});
    EXPECT_EQ(wordsFor(recordType<LogDrvInfo>(), "functionalStatus", 6), (Words{"critical", "degraded"}));
    EXPECT_EQ(wordsFor(recordType<LogDrvInfo>(), "functionalStatus", 0), Words{});
    EXPECT_EQ(wordsFor(recordType<ExtentEntry>(), "access", 0x62),
              (Words{"SMART failure", "free", "accessible"}));
    EXPECT_EQ(wordsFor(recordType<ControllerInfo>(), "memoryType", 2), Words{"non-ECC"});
    EXPECT_EQ(wordsOf(recordType<PhyDrvInfo>(), *findField(recordType<PhyDrvInfo>(), "heads")), nullptr);
}

// A row whose names do not exist would never be found.
TEST(FieldWords, NameFieldsThatExist) {
    const RecordType* types[] = {&recordType<ControllerInfo>(),  &recordType<ControllerSettings>(),
                                 &recordType<BatteryInfo>(),     &recordType<EnclosureEntry>(),
                                 &recordType<EnclosureSensor>(), &recordType<ExtentEntry>(),
                                 &recordType<PhyDrvSettings>(),  &recordType<MediaPatrolProgress>(),
                                 &recordType<LogDrvInfo>(),      &recordType<LogDrvSettings>()};
    std::size_t found = 0;
    for (const RecordType* type : types)
        for (const Field& field : type->fields)
            found += wordsOf(*type, field) != nullptr ? 1 : 0;
    EXPECT_EQ(found, fieldWordsCount());
}
