// The report as one HTML page that loads nothing: no script, no image, no font, and the only style
// sheet is inside. It is usable without color and with a screen reader.
#pragma once

#include <ctime>
#include <string>

#include "tools/status/format.h"

// Where and when the page was generated.
struct PageOrigin {
    std::string host;
    std::time_t written = 0;
};

// This host, now.
PageOrigin pageOrigin();

std::string formatPage(const Report& report, const PageOrigin& origin);

// The style sheet, and its digest for the page's content security policy: base64 of its SHA-256.
extern const char kPageStyle[];
extern const char kPageStyleDigest[];
