// The parts of the HTML page, by the source that holds them. Each add…() appends to the page.
#pragma once

#include <string>
#include <string_view>

#include "tools/status/format.h"

// page_text.cpp: pieces of HTML. What takes plain text escapes it for an element and for a quoted
// attribute; what takes HTML says so.
std::string htmlText(std::string_view text);
std::string isolatedText(std::string_view text);       // its text direction affects nothing around it
std::string megabytesText(std::uint64_t sectors);      // "1,000 MB"
std::string badge(const char* word, const char* kind); // a word whose color only repeats it
void addFact(std::string* page, const char* term, const std::string& html);

// page_findings.cpp
std::string severityBadge(Severity severity);
std::string statusBadge(Severity worst);
std::string objectName(const Object& object); // as HTML, without the controller
std::string anchorOf(const Object& object);   // "c0-d1"
Severity worstOf(const Report& report, const Object& object);
void addFindings(const Report& report, std::string* page);
void openCard(const Report& report, const Object& object, const std::string& html, std::string* page);
void closeCard(std::string* page);

// page_controller.cpp
void addController(const Report& report, const Controller& controller, std::string* page);

// page_arrays.cpp
std::string arrayName(const LogicalDrive& drive); // as HTML: "logical drive 0 Data"
void addLogicalDrives(const Report& report, const Controller& controller, std::string* page);

// page_enclosures.cpp
void addEnclosures(const Report& report, const Controller& controller, std::string* page);

// page_drives.cpp
void addDrives(const Report& report, const Controller& controller, std::string* page);

// page_extents.cpp
// As HTML. named: with the name of the logical drive, which can be long.
std::string extentUse(const Controller& controller, const ExtentEntry& extent, bool named);
void addSpace(const Controller& controller, const Drive& drive, std::string* page);
