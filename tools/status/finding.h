// What cli-status finds: a rule that applies to an object.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// In the order of the exit statuses of monitoring plugins. Informational findings are not problems.
enum class Severity : std::uint8_t { info, warning, critical, unknown };

enum class ObjectKind : std::uint8_t { host, controller, battery, enclosure, drive, logicalDrive };

struct Object {
    ObjectKind kind = ObjectKind::host;
    std::uint32_t controller = 0;
    std::uint32_t number = 0; // as cli shows it: drives from 1, the others from 0
    std::string name;         // of a logical drive
    bool operator==(const Object&) const = default;
};

struct Rule;

struct Finding {
    const Rule* rule = nullptr;
    Object object;
    std::string text; // contains texts of the adapter, not yet made printable
    std::optional<std::uint32_t> percent;
    // The sensors or operations that it is about, if its text has readings: with the rule and the object,
    // they identify it.
    std::vector<std::string> parts = {};
};
using Findings = std::vector<Finding>;

// "critical"
const char* severityText(Severity severity);

// "ok", "warning", "critical", "unknown": the state that a worst severity means
const char* statusText(Severity worst);

// "logicalDrive"
const char* objectKindText(ObjectKind kind);

// "drive 2 of controller 0"
std::string objectText(const Object& object);

// "logical drive 0 Archive"
std::string shortObjectText(const Object& object);

// Regardless of names, which can change.
bool isSameObject(const Object& left, const Object& right);

// Critical is worse than unknown, which is worse than warning.
bool isWorse(Severity left, Severity right);
Severity worseOf(Severity left, Severity right);

// The worst severity of the findings: critical before unknown before warning before info.
Severity worstSeverity(const Findings& findings);

// The number of findings with exactly this severity.
std::size_t countSeverity(const Findings& findings, Severity severity);

// Exit status: 0, also for info, 1, 2 or 3.
int exitStatus(Severity worst);

// "all well: 2 controllers, 12 drives, 3 logical drives", "2 problems, 1 of them critical"
struct Snapshot;
std::string summaryText(const Snapshot& snapshot, const Findings& findings);
