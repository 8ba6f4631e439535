// The rules of cli-status: one row each. The manual describes them by the same names.
#pragma once

#include <span>

#include "snapshot/snapshot.h"
#include "tools/status/finding.h"
#include "tools/status/limits.h"
#include "tools/status/renumbered.h"

// What the rules look at, and where their findings go.
struct Evaluation {
    const Snapshot& snapshot;
    const Limits& limits;
    const Snapshot* baseline;                 // an earlier snapshot, in the present numbers; nullptr: none
    const Renumbering* renumbering = nullptr; // if the baseline has other numbers
    const Rule* rule = nullptr;
    Findings findings = {};
};

struct Rule {
    const char* id;
    Severity severity;
    const char* condition; // in one phrase
    const char* action;    // the part of the manual page that says what to do
    void (*find)(Evaluation* evaluation);
};

std::span<const Rule> rules();
std::span<const Rule> baselineRules(); // which need a baseline

// Applies all rules; baseline is null if there is none. The worst findings come first, otherwise the
// order is that of the rules.
Findings evaluate(const Snapshot& snapshot, const Limits& limits, const Snapshot* baseline);

// Puts findings in that order.
void sortFindings(Findings* findings);

// Applies the baseline rules only.
Findings compare(const Snapshot& snapshot, const Snapshot& baseline);

// "the former controller 0 is missing, with 3 drives, logical drive 0 Data"
std::string formerMissingText(const Controller& former);

// For the sources of the rules. Adds a finding of the current rule. parts: see Finding.
void addFinding(Evaluation* evaluation, const Object& object, const std::string& text,
                std::optional<std::uint32_t> percent = std::nullopt);
void addFindingOf(Evaluation* evaluation, const Object& object, std::vector<std::string> parts,
                  const std::string& text);
Object objectOf(const Controller& controller);
Object objectOf(const Controller& controller, const Drive& drive);
Object objectOf(const Controller& controller, const LogicalDrive& drive);
Object objectOf(const Controller& controller, const Enclosure& enclosure);
Object batteryOf(const Controller& controller);
