// Writing a snapshot as JSON.
#include "snapshot/fields.h"
#include "snapshot/json.h"
#include "snapshot/text.h"
#include "snapshot/words.h"

static std::string hexOf(std::string_view bytes) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string hex;
    for (const char byte : bytes) {
        hex += digits[static_cast<unsigned char>(byte) >> 4];
        hex += digits[static_cast<unsigned char>(byte) & 15];
    }
    return hex;
}

void addText(Json* object, const std::string& key, std::string_view text) {
    (*object)[key] = asUtf8(text);
    if (!isUtf8(text))
        (*object)[key + "Bytes"] = hexOf(text);
}

static Json recordToJson(const RecordType& type, const void* record);

static Json elementToJson(const Field& field, const void* record, std::size_t index) {
    if (field.kind == FieldKind::record)
        return recordToJson(*field.record,
                            static_cast<const std::uint8_t*>(record) + field.offset + index * field.size);
    const std::int64_t value = numberAt(record, field, index);
    return field.kind == FieldKind::signedNumber ? Json(value) : Json(static_cast<std::uint64_t>(value));
}

static Json arrayToJson(const RecordType& type, const Field& field, const void* record) {
    Json array = Json::array();
    for (std::size_t i = 0; i < usedCount(type, record, field); ++i)
        array.push_back(elementToJson(field, record, i));
    return array;
}

static void addWords(Json* object, const RecordType& type, const Field& field, const void* record) {
    const FieldWords* row = wordsOf(type, field);
    if (row == nullptr)
        return;
    const std::vector<std::string> words = row->words(numberAt(record, field, 0));
    (*object)[std::string(field.name) + "Text"] = row->isBits ? Json(words) : Json(words.front());
}

static Json recordToJson(const RecordType& type, const void* record) {
    Json object = Json::object();
    for (const Field& field : type.fields) {
        if (field.kind == FieldKind::header || field.kind == FieldKind::reserved)
            continue;
        if (field.kind == FieldKind::text)
            addText(&object, field.name, textAt(record, field));
        else
            object[field.name] =
                field.isArray ? arrayToJson(type, field, record) : elementToJson(field, record, 0);
        addWords(&object, type, field, record);
    }
    return object;
}

template <typename Record>
static Json toJson(const std::optional<Record>& record) {
    return record ? recordToJson(recordType<Record>(), &*record) : Json();
}

template <typename Number>
static Json numberToJson(const std::optional<Number>& number) {
    return number ? Json(*number) : Json();
}

static const char* faultKindText(FaultKind kind) {
    static constexpr const char* words[] = {"refused", "overrun", "impossible", "repeated", "foreign"};
    return words[static_cast<std::size_t>(kind)];
}

static Json toJson(const Faults& faults) {
    Json array = Json::array();
    for (const Fault& fault : faults)
        array.push_back({{"operation", fault.operation},
                         {"kind", static_cast<int>(fault.kind)},
                         {"kindText", faultKindText(fault.kind)},
                         {"value", fault.value}});
    return array;
}

static Json toJson(const Enclosure& enclosure) {
    return {{"id", enclosure.id},
            {"entry", recordToJson(recordType<EnclosureEntry>(), &enclosure.entry)},
            {"status", toJson(enclosure.status)},
            {"faults", toJson(enclosure.faults)}};
}

static Json toJson(const Drive& drive) {
    return {{"number", drive.number},
            {"info", recordToJson(recordType<PhyDrvInfo>(), &drive.info)},
            {"settings", toJson(drive.settings)},
            {"patrol", toJson(drive.patrol)},
            {"locate", numberToJson(drive.locate)},
            {"speed3Gb", numberToJson(drive.speed3Gb)},
            {"faults", toJson(drive.faults)}};
}

static Json toJson(const Member& member) {
    Json object = {
        {"number", member.number}, {"lost", member.lost}, {"named", member.named}, {"listed", member.listed}};
    addText(&object, "serial", member.serial);
    object["channel"] = member.channel;
    object["enclosureId"] = member.enclosureId;
    return object;
}

static Json toJson(const Activity& activity) {
    return {{"kind", activity.kind},
            {"kindText", activityText(activity.kind)},
            {"state", activity.state},
            {"stateText", activity.state == kActivityPaused ? "paused" : "running"},
            {"percent", activity.percent}};
}

template <typename Item>
static Json listToJson(const std::vector<Item>& items) {
    Json array = Json::array();
    for (const Item& item : items)
        array.push_back(toJson(item));
    return array;
}

static Json toJson(const LogicalDrive& drive) {
    return {{"info", recordToJson(recordType<LogDrvInfo>(), &drive.info)},
            {"settings", toJson(drive.settings)},
            {"lostMask", numberToJson(drive.lostMask)},
            {"members", listToJson(drive.members)},
            {"activities", listToJson(drive.activities)},
            {"faults", toJson(drive.faults)}};
}

static Json toJson(const Controller& controller) {
    return {{"id", controller.id},
            {"info", toJson(controller.info)},
            {"version", toJson(controller.version)},
            {"settings", toJson(controller.settings)},
            {"driver", toJson(controller.driver)},
            {"place", toJson(controller.place)},
            {"battery", toJson(controller.battery)},
            {"buzzer", numberToJson(controller.buzzer)},
            {"enclosures", listToJson(controller.enclosures)},
            {"drives", listToJson(controller.drives)},
            {"logicalDrives", listToJson(controller.logicalDrives)},
            {"faults", toJson(controller.faults)}};
}

Json snapshotToJson(const Snapshot& snapshot) {
    return {{"controllerCount", snapshot.controllerCount},
            {"faults", toJson(snapshot.faults)},
            {"controllers", listToJson(snapshot.controllers)}};
}
