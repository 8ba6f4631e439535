// The event command: fetches events from an adapter and shows them through the event buffer.
#include "commands/event.h"

#include <cstdio>

#include "adapter/event.h"
#include "adapter/reply.h"
#include "commands/event_buffer.h"
#include "commands/options.h"

static constexpr std::uint32_t kMaxRequested = 100;
static constexpr std::uint32_t kEventReplySize = sizeof(ReplyHeader) + 51 * sizeof(HBAEvent);
static_assert(kEventReplySize == 20872);

// The size passed to the adapter is fixed at 51 events, but the adapter may write as many as requested,
// so the buffer holds the maximum.
static void fetchEvents(std::uint32_t controller, std::uint32_t requested) {
    Reply<HBAEvent, kMaxRequested> reply = {};
    EventQuery query = {-1, requested};
    q5_getHBAEvents(hbaAddress(controller), 0, &query, &reply, kEventReplySize);
    const std::uint32_t delivered = query.count < kMaxRequested ? query.count : kMaxRequested;
    for (std::uint32_t i = 0; i < delivered; ++i)
        AddEventToBuffer(&reply.record[i]);
}

static void printEvent(int index, const HBAEvent& event, bool verbose) {
    if (verbose) {
        std::printf("EventID: 0x%x \n", event.eventId);
        std::printf("Event Desciption: %.*s\n", FIELD_PRINTF_ARGS(event.description));
    } else {
        std::printf("%11d  0x%x\n", index, event.eventId);
    }
}

int ListEventInfo(int wordCount, char** words) {
    std::uint32_t controller = 0, requested = 1;
    bool verbose = false;
    const Option options[] = {
        flagOption("-v", &verbose),
        numberOption("-i", "controller ID", &controller, Result::badId),
        countOption("-c", "event count", &requested, kMaxRequested),
    };
    if (const int result = readOptions(wordCount, words, firstOption(wordCount, words), options,
                                       "Invalid parameters defined"))
        return result;

    fetchEvents(controller, requested);
    const std::uint32_t stored = GetBufferEventCount();
    if (stored == 0)
        std::puts("No event!");
    else if (!verbose)
        std::puts("Event_Index  Event_ID");

    const std::uint32_t shown = requested < stored ? requested : stored;
    HBAEvent event;
    for (std::uint32_t i = 0; i < shown && GetEventFromBuffer(&event); ++i)
        printEvent(static_cast<int>(i), event, verbose);
    return Result::done;
}
