// Which findings of two runs are about the same problem.
#pragma once

#include "tools/status/finding.h"

// The same rule and object, and, if both have parts, a part in common: at most the text has changed.
bool isSameProblem(const Finding& left, const Finding& right);

// Whether one of the findings is the same problem.
bool persists(const Findings& findings, const Finding& wanted);

// Whether the findings have all that this one is about. A text with readings does not count.
bool isKnown(const Findings& findings, const Finding& wanted);

// Whether the same object, or the same part of it, has a problem.
bool concernSame(const Finding& left, const Finding& right);
