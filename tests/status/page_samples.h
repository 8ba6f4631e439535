// Reports that no simulated world gives: the largest controller, refusals everywhere, and texts and bytes
// meant to break a page.
#pragma once

#include <span>

#include "snapshot/snapshot.h"

struct PageSample {
    const char* name;
    Snapshot (*make)();
};
std::span<const PageSample> pageSamples();

// Every text field of every record is this text, as far as it fits.
Snapshot withTexts(std::string_view text);

// Texts that try to break out of their element or attribute.
std::span<const std::string_view> untrustedTexts();

// Every byte of every record comes from a generator with this seed.
Snapshot withRandomRecords(std::uint32_t seed);
