// Reading a snapshot from JSON. Every value is checked against what its field can hold.
#include "snapshot/fields.h"
#include "snapshot/json.h"

struct Reader {
    std::string problem; // the first one; empty: none
    bool failed() const { return !problem.empty(); }
};

static void refuse(Reader* reader, const std::string& key, const char* what) {
    if (!reader->failed())
        reader->problem = "\"" + key + "\" " + what;
}

static const Json* find(Reader* reader, const Json& object, const std::string& key) {
    const auto found = object.is_object() ? object.find(key) : object.end();
    if (object.is_object() && found != object.end())
        return &*found;
    refuse(reader, key, "is missing");
    return nullptr;
}

static std::uint64_t maxOf(const Field& field) {
    const std::size_t bits = 8 * field.size - (field.kind == FieldKind::signedNumber ? 1 : 0);
    return bits == 64 ? UINT64_MAX : (std::uint64_t{1} << bits) - 1;
}

// Whether a JSON number is whole and fits a number field.
static bool fits(const Json& value, const Field& field) {
    if (value.is_number_unsigned())
        return value.get<std::uint64_t>() <= maxOf(field);
    return value.is_number_integer() && field.kind == FieldKind::signedNumber &&
           value.get<std::int64_t>() >= -static_cast<std::int64_t>(maxOf(field)) - 1;
}

static std::int64_t numberOf(const Json& value) {
    return value.is_number_unsigned() ? static_cast<std::int64_t>(value.get<std::uint64_t>())
                                      : value.get<std::int64_t>();
}

static int digitOf(char digit) {
    static constexpr std::string_view digits = "0123456789abcdef";
    const std::size_t at = digits.find(digit);
    return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

// The bytes of a hexadecimal text; nothing if the text is not hexadecimal.
static std::optional<std::string> bytesOf(const std::string& hex) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
        const int high = digitOf(hex[i]), low = digitOf(hex[i + 1]);
        if (high < 0 || low < 0)
            return std::nullopt;
        bytes += static_cast<char>(high << 4 | low);
    }
    return hex.size() % 2 == 0 ? std::optional(bytes) : std::nullopt;
}

std::optional<std::string> textFrom(const Json& object, const std::string& key) {
    const auto hex = object.find(key + "Bytes"), text = object.find(key);
    if (hex != object.end())
        return hex->is_string() ? bytesOf(hex->get<std::string>()) : std::nullopt;
    return text != object.end() && text->is_string() ? std::optional(text->get<std::string>()) : std::nullopt;
}

static std::string readText(Reader* reader, const Json& object, const std::string& key) {
    if (find(reader, object, key) == nullptr)
        return "";
    const std::optional<std::string> text = textFrom(object, key);
    if (!text)
        refuse(reader, key, "is not a text");
    return text.value_or("");
}

static void readRecord(Reader* reader, const Json& json, const RecordType& type, void* record);

static void readElement(Reader* reader, const Json& json, const Field& field, void* record,
                        std::size_t index) {
    if (field.kind == FieldKind::record)
        readRecord(reader, json, *field.record,
                   static_cast<std::uint8_t*>(record) + field.offset + index * field.size);
    else if (fits(json, field))
        setNumberAt(record, field, index, numberOf(json));
    else
        refuse(reader, field.name, "is not a number that the field can hold");
}

static void readField(Reader* reader, const Json& json, const Field& field, void* record) {
    const Json* value = find(reader, json, field.name);
    if (value == nullptr)
        return;
    if (!field.isArray)
        return readElement(reader, *value, field, record, 0);
    if (!value->is_array() || value->size() > field.count)
        return refuse(reader, field.name, "is not a list that the field can hold");
    for (std::size_t i = 0; i < value->size(); ++i)
        readElement(reader, (*value)[i], field, record, i);
}

static void readRecord(Reader* reader, const Json& json, const RecordType& type, void* record) {
    for (const Field& field : type.fields) {
        if (reader->failed())
            return;
        if (field.kind == FieldKind::text)
            setTextAt(record, field, readText(reader, json, field.name));
        else if (field.kind != FieldKind::header && field.kind != FieldKind::reserved)
            readField(reader, json, field, record);
    }
}

template <typename Record>
static Record recordOf(Reader* reader, const Json& object, const char* key) {
    Record record = {};
    if (const Json* json = find(reader, object, key))
        readRecord(reader, *json, recordType<Record>(), &record);
    return record;
}

template <typename Record>
static std::optional<Record> optionalRecord(Reader* reader, const Json& object, const char* key) {
    const Json* json = find(reader, object, key);
    if (json == nullptr || json->is_null())
        return std::nullopt;
    return recordOf<Record>(reader, object, key);
}

template <typename Number>
static std::optional<Number> optionalNumber(Reader* reader, const Json& object, const char* key) {
    const Json* json = find(reader, object, key);
    if (json == nullptr || json->is_null())
        return std::nullopt;
    const bool isSigned = std::is_signed_v<Number>;
    const Field field = {
        key,   0,       sizeof(Number), 1, isSigned ? FieldKind::signedNumber : FieldKind::unsignedNumber,
        false, nullptr, nullptr};
    if (fits(*json, field))
        return static_cast<Number>(numberOf(*json));
    refuse(reader, key, "is not a number that it can hold");
    return std::nullopt;
}

template <typename Number>
static Number numberOf(Reader* reader, const Json& object, const char* key) {
    const std::optional<Number> number = optionalNumber<Number>(reader, object, key);
    if (!number)
        refuse(reader, key, "is not a number");
    return number.value_or(0);
}

// Every item of a list; read(item) returns one.
template <typename Item, typename Read>
static std::vector<Item> listOf(Reader* reader, const Json& object, const char* key, Read read) {
    std::vector<Item> items;
    const Json* list = find(reader, object, key);
    if (list != nullptr && !list->is_array())
        refuse(reader, key, "is not a list");
    for (std::size_t i = 0; !reader->failed() && i < list->size(); ++i)
        items.push_back(read((*list)[i]));
    return items;
}

static Faults faultsOf(Reader* reader, const Json& object) {
    return listOf<Fault>(reader, object, "faults", [&](const Json& json) {
        const auto kind = numberOf<std::uint8_t>(reader, json, "kind");
        if (kind > static_cast<std::uint8_t>(FaultKind::foreign))
            refuse(reader, "kind", "is unknown");
        return Fault{readText(reader, json, "operation"), static_cast<FaultKind>(kind),
                     numberOf<std::int64_t>(reader, json, "value")};
    });
}

static Enclosure enclosureOf(Reader* reader, const Json& json) {
    return {numberOf<std::uint32_t>(reader, json, "id"), recordOf<EnclosureEntry>(reader, json, "entry"),
            optionalRecord<EnclosureStatus>(reader, json, "status"), faultsOf(reader, json)};
}

static Drive driveOf(Reader* reader, const Json& json) {
    return {numberOf<std::uint32_t>(reader, json, "number"),
            recordOf<PhyDrvInfo>(reader, json, "info"),
            optionalRecord<PhyDrvSettings>(reader, json, "settings"),
            optionalRecord<MediaPatrolProgress>(reader, json, "patrol"),
            optionalNumber<std::uint8_t>(reader, json, "locate"),
            optionalNumber<std::int32_t>(reader, json, "speed3Gb"),
            faultsOf(reader, json)};
}

static Activity activityOf(Reader* reader, const Json& json) {
    return {static_cast<ActivityBit>(numberOf<std::uint8_t>(reader, json, "kind")),
            numberOf<std::uint8_t>(reader, json, "state"), numberOf<std::uint16_t>(reader, json, "percent")};
}

static LogicalDrive logicalDriveOf(Reader* reader, const Json& json) {
    LogicalDrive drive;
    drive.info = recordOf<LogDrvInfo>(reader, json, "info");
    drive.settings = optionalRecord<LogDrvSettings>(reader, json, "settings");
    drive.lostMask = optionalNumber<std::uint32_t>(reader, json, "lostMask");
    drive.activities = listOf<Activity>(reader, json, "activities",
                                        [&](const Json& each) { return activityOf(reader, each); });
    drive.faults = faultsOf(reader, json);
    return drive;
}

static void readLists(Reader* reader, const Json& json, Controller* controller) {
    controller->enclosures = listOf<Enclosure>(reader, json, "enclosures",
                                               [&](const Json& each) { return enclosureOf(reader, each); });
    controller->drives =
        listOf<Drive>(reader, json, "drives", [&](const Json& each) { return driveOf(reader, each); });
    controller->logicalDrives = listOf<LogicalDrive>(
        reader, json, "logicalDrives", [&](const Json& each) { return logicalDriveOf(reader, each); });
    for (LogicalDrive& drive : controller->logicalDrives)
        resolveMembers(*controller, &drive);
}

static Controller controllerOf(Reader* reader, const Json& json) {
    Controller controller;
    controller.id = numberOf<std::uint32_t>(reader, json, "id");
    controller.info = optionalRecord<ControllerInfo>(reader, json, "info");
    controller.version = optionalRecord<ControllerVersionInfo>(reader, json, "version");
    controller.settings = optionalRecord<ControllerSettings>(reader, json, "settings");
    controller.driver = optionalRecord<DriverInfo>(reader, json, "driver");
    controller.place = optionalRecord<DiscoverPathInfo>(reader, json, "place");
    controller.battery = optionalRecord<BatteryInfo>(reader, json, "battery");
    controller.buzzer = optionalNumber<std::uint8_t>(reader, json, "buzzer");
    readLists(reader, json, &controller);
    controller.faults = faultsOf(reader, json);
    return controller;
}

std::string snapshotFromJson(const Json& json, Snapshot* snapshot) {
    Reader reader;
    snapshot->controllerCount = numberOf<std::uint32_t>(&reader, json, "controllerCount");
    snapshot->faults = faultsOf(&reader, json);
    snapshot->controllers = listOf<Controller>(&reader, json, "controllers",
                                               [&](const Json& each) { return controllerOf(&reader, each); });
    return reader.problem;
}

std::string snapshotFromText(const std::string& text, Snapshot* snapshot) {
    const Json json = Json::parse(text, nullptr, false);
    if (!json.is_object())
        return "it is not JSON that --json printed";
    const auto format = json.find("format");
    if (format == json.end() || *format != kJsonFormat)
        return "it is not of format " + std::to_string(kJsonFormat);
    return snapshotFromJson(json, snapshot);
}
