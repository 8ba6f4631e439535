// A creation as words and as a request.
#pragma once

#include "adapter/creation.h"
#include "tests/commands/logdrv_records.h"

using Words = std::vector<std::string>;

// logdrv -a add with these options and this creation text.
inline Words addWords(const Words& options, const std::string& text) {
    Words words = {"logdrv", "-a", "add"};
    words.insert(words.end(), options.begin(), options.end());
    words.insert(words.end(), {"-z", text});
    return words;
}

// The request for a RAID0 called "a" of 5 MB on drives 1 and 2, all else by default.
inline CreateArrayRequest plainRequest() {
    CreateArrayRequest request = {};
    request.stripeSize = 64;
    request.constant4 = 1;
    request.capacity = 5;
    request.name[0] = 'a';
    request.constant91 = 1;
    request.allocation = 3;
    request.memberCount = 2;
    request.parityCount = 2;
    request.subArrayCount = 2;
    request.sectorSize = 512;
    request.member[1].driveId = 1;
    return request;
}
