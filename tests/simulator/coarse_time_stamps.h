// A file system whose time stamps have a resolution of one second.
#pragma once

// While one exists, stat reports no fractions of a second.
struct CoarseTimeStamps {
    CoarseTimeStamps();
    ~CoarseTimeStamps();
    CoarseTimeStamps(const CoarseTimeStamps&) = delete;
    CoarseTimeStamps& operator=(const CoarseTimeStamps&) = delete;
};
