// Loading and saving the event file, and merging with what another session has saved in the meantime.
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

// The contents of the file when it was read.
struct EventImage {
    ImageState state;
    ::off_t fileSize;
    EventBuffer buffer; // zero past the end of a shorter file
};
} // namespace

static EventImage loaded; // at startup

// Reads the file into the buffer and clears the rest.
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

// Opens only regular files: opening a pipe may block, and opening a device may have side effects.
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

// Replaces g_EventBuffer with what another session saved, without the events that this session displayed and
// with those that it fetched and did not display.
static void mergeInto(const EventBuffer& saved) {
    HBAEvent fetched[kEventSlots];
    const std::uint32_t count = copyNewEvents(fetched);
    g_EventBuffer = saved;
    for (std::uint32_t slot = 0; slot < kEventSlots; ++slot)
        if (wasEventRemoved(slot))
            RemoveEventFromBuffer(&loaded.buffer.slot[slot]);
    for (std::uint32_t i = count; i > 0; --i)
        AddEventToBuffer(&fetched[i - 1]);
}

static void writeBuffer(const char* path, bool locked) {
    FileReplacement file;
    sigset_t before;
    blockSignals(&before);
    if (openReplacement(&file, path, LinkPolicy::replace, 0644, locked)) {
        // A write error is detected by the commit.
        static_cast<void>(std::fwrite(&g_EventBuffer, sizeof g_EventBuffer, 1, file.stream) == 1);
        commitReplacement(&file);
    }
    restoreSignals(&before);
}

// Without the lock, after waiting for it in vain, the events are saved all the same.
static void saveUnderLock(const char* path, EventImage* current, bool locked) {
    readImage(path, current);
    if (current->state == ImageState::unreadable)
        return;
    if (current->state == ImageState::present && !isSameImage(*current, loaded))
        mergeInto(current->buffer);
    if (!holdsBuffer(*current, g_EventBuffer))
        writeBuffer(path, locked);
}

void saveEventBuffer(const char* path) {
    static EventImage current;
    if (loaded.state == ImageState::unreadable)
        return;
    readImage(path, &current);
    if (holdsBuffer(current, g_EventBuffer))
        return;
    const int lock = lockDirectoryOf(path, kLockSeconds);
    saveUnderLock(path, &current, lock >= 0);
    unlockDirectory(lock);
}
