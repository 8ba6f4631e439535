// Loading and saving the event file, and merging a session into what another one saved meanwhile.
#include "commands/event_store.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "commands/event_buffer.h"
#include "util/advisory_lock.h"
#include "util/atomic_file.h"
#include "util/signals.h"

namespace {
enum class ImageState { missing, unreadable, present };

// The file as it was read.
struct EventImage {
    ImageState state;
    ::off_t fileSize;
    EventBuffer buffer; // zero beyond a shorter file
};
} // namespace

static EventImage loaded; // at start-up

// Fills the buffer as far as the file goes.
static bool readBuffer(int file, EventBuffer* buffer) {
    auto* bytes = reinterpret_cast<char*>(buffer);
    std::size_t size = 0;
    while (size < sizeof *buffer) {
        const ssize_t length = read(file, bytes + size, sizeof *buffer - size);
        if (length < 0 && errno != EINTR)
            return false;
        if (length == 0)
            break;
        if (length > 0)
            size += static_cast<std::size_t>(length);
    }
    std::memset(bytes + size, 0, sizeof *buffer - size);
    return true;
}

// What is no regular file is not even opened: opening a pipe may wait, opening a device may do anything.
static void readImage(const char* path, EventImage* image) {
    struct stat info;
    image->state = ImageState::missing;
    if (lstat(path, &info) != 0) {
        if (errno != ENOENT && errno != ENOTDIR)
            image->state = ImageState::unreadable;
        return;
    }
    if (!S_ISREG(info.st_mode) && !S_ISDIR(info.st_mode))
        return;
    image->state = ImageState::unreadable;
    const int file = open(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        return;
    image->fileSize = info.st_size;
    if (fstat(file, &info) == 0 && S_ISREG(info.st_mode) && readBuffer(file, &image->buffer)) {
        image->fileSize = info.st_size;
        image->state = ImageState::present;
    }
    close(file);
}

void loadEventBuffer(const char* path) {
    readImage(path, &loaded);
    if (loaded.state == ImageState::present)
        g_EventBuffer = loaded.buffer;
    else
        g_EventBuffer.position = g_EventBuffer.count = 0;
    forgetEventHistory();
}

static bool holdsBuffer(const EventImage& image, const EventBuffer& buffer) {
    return image.state == ImageState::present && image.fileSize == sizeof buffer &&
           std::memcmp(&image.buffer, &buffer, sizeof buffer) == 0;
}

static bool isSameImage(const EventImage& a, const EventImage& b) {
    return a.state == b.state && a.fileSize == b.fileSize &&
           std::memcmp(&a.buffer, &b.buffer, sizeof a.buffer) == 0;
}

// Makes g_EventBuffer what another session saved, without the events that this one displayed and with
// those that it fetched and did not display.
static void mergeInto(const EventBuffer& saved) {
    HBAEvent fetched[kEventSlots];
    const std::uint32_t count = copyNewEvents(fetched);
    g_EventBuffer = saved;
    for (std::uint32_t slot = 0; slot < kEventSlots; ++slot)
        if (wasEventTaken(slot))
            RemoveEventFromBuffer(&loaded.buffer.slot[slot]);
    for (std::uint32_t i = count; i > 0; --i)
        AddEventToBuffer(&fetched[i - 1]);
}

static void writeBuffer(const char* path) {
    FileReplacement file;
    sigset_t before;
    holdSignals(&before);
    if (openReplacement(&file, path, LinkPolicy::replace, 0644)) {
        // What cannot be written fails the replacement.
        static_cast<void>(std::fwrite(&g_EventBuffer, sizeof g_EventBuffer, 1, file.stream) == 1);
        commitReplacement(&file);
    }
    releaseSignals(&before);
}

static void saveUnderLock(const char* path, EventImage* found) {
    readImage(path, found);
    if (found->state == ImageState::unreadable)
        return;
    if (found->state == ImageState::present && !isSameImage(*found, loaded))
        mergeInto(found->buffer);
    if (!holdsBuffer(*found, g_EventBuffer))
        writeBuffer(path);
}

void saveEventBuffer(const char* path) {
    static EventImage found; // as the file is now
    if (loaded.state == ImageState::unreadable)
        return;
    readImage(path, &found);
    if (holdsBuffer(found, g_EventBuffer))
        return;
    const int lock = lockDirectoryOf(path, kLockSeconds);
    saveUnderLock(path, &found);
    unlockDirectory(lock);
}
