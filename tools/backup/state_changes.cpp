// Whether two snapshots show the same state, apart from what always varies.
#include <algorithm>

#include "snapshot/json.h"
#include "snapshot/text.h"
#include "tools/backup/configuration.h"

// Sensor readings and progress: a key, and that of the object or list that contains it.
struct VaryingKey {
    std::string_view parent, key;
};
static constexpr VaryingKey kVarying[] = {
    {"battery", "temperature"}, {"battery", "voltage"},  {"sensor", "reading"},
    {"patrol", "progress"},     {"patrol", "loopCount"}, {"activities", "percent"},
};

// A key that ends in "Text" has the word of a code, which only repeats it.
static bool varies(std::string_view parent, std::string_view key) {
    return key.ends_with("Text") ||
           std::any_of(std::begin(kVarying), std::end(kVarying),
                       [&](const auto& row) { return row.parent == parent && row.key == key; });
}

// parent: the key of the object, or of the array that it is in.
static void eraseVarying(std::string_view parent, Json* json) {
    if (json->is_array())
        for (Json& element : *json)
            eraseVarying(parent, &element);
    if (!json->is_object())
        return;
    Json kept = Json::object();
    for (auto& [key, value] : json->items())
        if (!varies(parent, key)) {
            eraseVarying(key, &value);
            kept[key] = std::move(value);
        }
    *json = std::move(kept);
}

static Json lastingState(const Snapshot& snapshot) {
    Json json = snapshotToJson(snapshot);
    eraseVarying("", &json);
    return json;
}

static std::string valueText(const Json& json, const std::string& path) {
    const Json::json_pointer pointer(path);
    if (!json.contains(pointer))
        return "missing";
    return json.at(pointer).is_structured() ? "present" : json.at(pointer).dump();
}

Lines stateChanges(const Snapshot& earlier, const Snapshot& now) {
    Lines lines;
    const Json before = lastingState(earlier), after = lastingState(now);
    for (const Json& change : Json::diff(before, after)) {
        const std::string path = change["path"].get<std::string>();
        lines.push_back({Severity::info, printable("snapshot: " + path + " was " + valueText(before, path) +
                                                   "; it is " + valueText(after, path))});
    }
    return lines;
}
