// A strict reader of the metrics that cli-status writes.
#pragma once

#include <string>

// The first problem; empty: none.
std::string metricsProblem(const std::string& text);
