// The Prometheus text format: the families of metrics, one row each, and how a series is written.
#pragma once

#include <span>
#include <string>
#include <utility>
#include <vector>

#include "tools/status/format.h"

using Labels = std::vector<std::pair<const char*, std::string>>;

// The output for the series of one family.
struct Series {
    const char* family;
    std::string* text;
};

// Appends a line. The labels are escaped; the value is a number.
void addSeries(Series* series, const Labels& labels, const std::string& value);

struct MetricFamily {
    const char* name;
    const char* help; // the manual has the same
    void (*add)(const Report& report, Series* series);
};

// All of them are gauges, since adapters can reset their counters.
std::span<const MetricFamily> hostMetrics();         // format_metrics.cpp
std::span<const MetricFamily> controllerMetrics();   // metrics_controllers.cpp
std::span<const MetricFamily> driveMetrics();        // metrics_drives.cpp
std::span<const MetricFamily> logicalDriveMetrics(); // metrics_arrays.cpp

Labels controllerLabels(const Controller& controller);
std::string yesNo(bool value);            // "1" or "0"
std::string ratio(std::uint32_t percent); // "0.42" for 42
