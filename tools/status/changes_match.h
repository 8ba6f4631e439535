// Which findings of two runs are about the same problem.
#pragma once

#include "tools/status/finding.h"

// The same rule and object, and, if both have parts, a part in common: at most the text has changed.
bool isSameProblem(const Finding& left, const Finding& right);

// Whether one of the findings is the same problem.
bool persists(const Findings& findings, const Finding& wanted);

// Whether the findings contain all parts of this one or, if it has none, its text. The text of a finding with
// parts has readings and is not compared.
bool isKnown(const Findings& findings, const Finding& wanted);

// Whether both findings are about the same object and, if both have parts, share one.
bool concernSame(const Finding& left, const Finding& right);
