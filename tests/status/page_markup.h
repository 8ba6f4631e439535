// A strict reader of the pages that cli-status writes. It knows no more HTML than they use.
#pragma once

#include <set>
#include <string>
#include <vector>

struct Markup {
    std::string problem;               // the first one; empty: none
    std::vector<std::string> skeleton; // each tag with the names of its attributes, in order
    std::vector<std::string> ids, references;
    std::vector<double> strips; // the sum of the widths of each strip, in percent
};

Markup readMarkup(const std::string& page);
