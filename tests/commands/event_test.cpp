// The event command: its options, its query, and what it shows of the event buffer.
#include "commands/event.h"

#include <cstdio>
#include <string>

#include "adapter/event.h"
#include "commands/event_buffer.h"
#include "tests/mock_adapter.h"

using Events = std::vector<HBAEvent>;

static HBAEvent eventOf(std::uint32_t id, const std::string& description = "") {
    HBAEvent event = {};
    event.eventId = id;
    std::memcpy(event.description, description.data(), description.size());
    return event;
}

// The events first .. last, in this order.
static Events eventsFrom(std::uint32_t first, std::uint32_t last) {
    Events events;
    for (std::uint32_t id = first; id <= last; ++id)
        events.push_back(eventOf(id));
    return events;
}

static void store(const Events& events) {
    for (const HBAEvent& event : events)
        AddEventToBuffer(&event);
}

// Expects a query for this number of events. The adapter reports a count and delivers these events.
static void expectFetch(std::uint32_t controller, std::uint32_t requested, std::uint32_t reportedCount,
                        const Events& delivered) {
    expectCall("q5_getHBAEvents", queryFor(controller, EventQuery{-1, requested}, 20872),
               concat({bytesOf(EventQuery{-1, reportedCount}), listReply(delivered)}));
}

static void expectFetch(std::uint32_t controller, std::uint32_t requested, const Events& delivered = {}) {
    expectFetch(controller, requested, static_cast<std::uint32_t>(delivered.size()), delivered);
}

namespace {
class EventCommand : public MockAdapterTest {
protected:
    void SetUp() override {
        MockAdapterTest::SetUp();
        g_EventBuffer = {};
    }
};
} // namespace

TEST_F(EventCommand, FetchesAndShowsOneEventByDefault) {
    expectFetch(0, 1, {eventOf(0x1234)});
    expectOutcome(run(ListEventInfo, {"event"}), 0,
                  "Event_Index  Event_ID\n"
                  "          0  0x1234\n");
    EXPECT_EQ(GetBufferEventCount(), 0u);
}

TEST_F(EventCommand, ShowsTheMostRecentEventsOfTheBuffer) {
    store({eventOf(0xa1), eventOf(0xa2)});
    expectFetch(0, 1, {eventOf(0xb1)});
    expectOutcome(run(ListEventInfo, {"event"}), 0,
                  "Event_Index  Event_ID\n"
                  "          0  0xb1\n");
    EXPECT_EQ(GetBufferEventCount(), 2u);
}

TEST_F(EventCommand, ShowsTheLastDeliveredEventFirst) {
    expectFetch(0, 3, {eventOf(1), eventOf(0xffffffff), eventOf(0xabc)});
    expectOutcome(run(ListEventInfo, splitWords("event -c 3")), 0,
                  "Event_Index  Event_ID\n"
                  "          0  0xabc\n"
                  "          1  0xffffffff\n"
                  "          2  0x1\n");
}

TEST_F(EventCommand, ReportsNoEvent) {
    expectFetch(0, 1);
    expectOutcome(run(ListEventInfo, {"event"}), 0, "No event!\n");
    expectFetch(0, 1);
    expectOutcome(run(ListEventInfo, splitWords("event -v")), 0, "No event!\n");
}

TEST_F(EventCommand, DescribesEventsVerbosely) {
    expectFetch(0, 2, {eventOf(0x20001, "Drive 3 online"), eventOf(0x1f, "")});
    expectOutcome(run(ListEventInfo, splitWords("event -c 2 -v")), 0,
                  "EventID: 0x1f \n"
                  "Event Desciption: \n"
                  "EventID: 0x20001 \n"
                  "Event Desciption: Drive 3 online\n");
}

TEST_F(EventCommand, TruncatesUnterminatedDescription) {
    expectFetch(0, 1, {eventOf(2, std::string(324, 'd'))});
    expectOutcome(run(ListEventInfo, splitWords("event -v")), 0,
                  "EventID: 0x2 \n"
                  "Event Desciption: " +
                      std::string(324, 'd') + "\n");
}

TEST_F(EventCommand, ReadsNoOptionsFromTheAction) {
    expectFetch(0, 1, {eventOf(7)});
    expectOutcome(run(ListEventInfo, splitWords("event -a list")), 0,
                  "Event_Index  Event_ID\n"
                  "          0  0x7\n");
    expectFetch(0, 1, {eventOf(7, "text")});
    expectOutcome(run(ListEventInfo, splitWords("event -A -v")), 0,
                  "Event_Index  Event_ID\n"
                  "          0  0x7\n");
}

TEST_F(EventCommand, ReadsOptionsAfterTheAction) {
    expectFetch(0, 5, {eventOf(9, "nine")});
    expectOutcome(run(ListEventInfo, splitWords("event -a list -c 5 -v")), 0,
                  "EventID: 0x9 \n"
                  "Event Desciption: nine\n");
}

TEST_F(EventCommand, IgnoresCaseOfOptions) {
    expectFetch(1, 2);
    expectOutcome(run(ListEventInfo, splitWords("event -V -I 1 -C 2")), 0, "No event!\n");
}

TEST_F(EventCommand, AddressesTheControllerByTheLow16BitsOfItsId) {
    expectFetch(2, 1);
    expectOutcome(run(ListEventInfo, splitWords("event -i 2")), 0, "No event!\n");
    expectCall("q5_getHBAEvents", {0xFF, 0xFF, 0,    0,    0, 0, 0, 0, 0,    0,    0, 0,   // address, 0
                                   0xFF, 0xFF, 0xFF, 0xFF, 1, 0, 0, 0, 0x88, 0x51, 0, 0}); // query, 20872
    run(ListEventInfo, splitWords("event -i 4294967295"));
}

TEST_F(EventCommand, IgnoresACountOutsideItsRange) {
    for (const char* count : {"0", "101", "4294967295"}) {
        expectFetch(0, 1);
        expectOutcome(run(ListEventInfo, {"event", "-c", count}), 0, "No event!\n");
    }
    expectFetch(0, 5);
    expectOutcome(run(ListEventInfo, splitWords("event -c 5 -c 0")), 0, "No event!\n");
}

TEST_F(EventCommand, RequestsAHundredEvents) {
    expectFetch(0, 100);
    expectOutcome(run(ListEventInfo, splitWords("event -c 100")), 0, "No event!\n");
}

// The buffer keeps the newest 49 of 100 events. Its last slot, which is never stored to, is returned
// when removal passes it.
TEST_F(EventCommand, HoldsAHundredEvents) {
    expectFetch(0, 100, eventsFrom(1, 100));
    std::string listing = "Event_Index  Event_ID\n"
                          "          0  0x64\n"
                          "          1  0x63\n"
                          "          2  0x62\n"
                          "          3  0x0\n";
    char line[64];
    for (int index = 4; index < 50; ++index) { // 0x61 to 0x34
        std::snprintf(line, sizeof line, "%11d  0x%x\n", index, 101 - index);
        listing += line;
    }
    expectOutcome(run(ListEventInfo, splitWords("event -c 100")), 0, listing);
}

TEST_F(EventCommand, LimitsTheDeliveredCount) {
    expectFetch(0, 1, 0xFFFFFFFF, eventsFrom(1, 100));
    expectOutcome(run(ListEventInfo, {"event"}), 0,
                  "Event_Index  Event_ID\n"
                  "          0  0x64\n");
    EXPECT_EQ(GetBufferEventCount(), 49u);
}

TEST_F(EventCommand, StoresAllDeliveredEventsAndShowsTheRequested) {
    expectFetch(0, 2, eventsFrom(1, 3));
    expectOutcome(run(ListEventInfo, splitWords("event -c 2")), 0,
                  "Event_Index  Event_ID\n"
                  "          0  0x3\n"
                  "          1  0x2\n");
    expectFetch(0, 1);
    expectOutcome(run(ListEventInfo, {"event"}), 0,
                  "Event_Index  Event_ID\n"
                  "          0  0x1\n");
}

TEST_F(EventCommand, ShowsSavedEventsOnce) {
    store(eventsFrom(1, 5));
    expectFetch(0, 3);
    expectOutcome(run(ListEventInfo, splitWords("event -c 3")), 0,
                  "Event_Index  Event_ID\n"
                  "          0  0x5\n"
                  "          1  0x4\n"
                  "          2  0x3\n");
    expectFetch(0, 3);
    expectOutcome(run(ListEventInfo, splitWords("event -c 3")), 0,
                  "Event_Index  Event_ID\n"
                  "          0  0x2\n"
                  "          1  0x1\n");
    expectFetch(0, 3);
    expectOutcome(run(ListEventInfo, splitWords("event -c 3")), 0, "No event!\n");
}

TEST_F(EventCommand, ToleratesCorruptFileImage) {
    g_EventBuffer.position = 0xFFFFFFFF;
    g_EventBuffer.count = 0xFFFFFFFF;
    expectFetch(0, 100);
    EXPECT_EQ(run(ListEventInfo, splitWords("event -c 100")).result, 0);
    EXPECT_EQ(GetBufferEventCount(), 0u);
}

TEST_F(EventCommand, UsesTheDeliveredCountAndNotTheResult) {
    expectCall("q5_getHBAEvents", queryFor(0, EventQuery{-1, 1}, 20872),
               concat({bytesOf(EventQuery{-1, 1}), listReply(Events{eventOf(0x77)})}), 1);
    expectOutcome(run(ListEventInfo, {"event"}), 0,
                  "Event_Index  Event_ID\n"
                  "          0  0x77\n");
}

TEST_F(EventCommand, RejectsUnknownOption) {
    for (const char* line : {"event -x", "event list", "event -v x", "event -a list -x", "event -c 2 3"})
        expectOutcome(run(ListEventInfo, splitWords(line)), 1, "Invalid parameters defined\n");
}

TEST_F(EventCommand, RejectsInvalidCount) {
    expectOutcome(run(ListEventInfo, splitWords("event -c x")), 1, "Invalid event count 'x' specified\n");
    expectOutcome(run(ListEventInfo, splitWords("event -c -1")), 1, "Invalid event count '-1' specified\n");
}

TEST_F(EventCommand, RejectsInvalidControllerId) {
    expectOutcome(run(ListEventInfo, splitWords("event -i x")), 6, "Invalid controller ID 'x' specified\n");
    expectOutcome(run(ListEventInfo, splitWords("event -c 2 -i 1.")), 6,
                  "Invalid controller ID '1.' specified\n");
}

TEST_F(EventCommand, StopsAtTheFirstError) {
    expectOutcome(run(ListEventInfo, splitWords("event -c y -i x -q")), 1,
                  "Invalid event count 'y' specified\n");
}

TEST_F(EventCommand, ReadsMissingValueFromTheNextSlot) {
    expectFetch(3, 1);
    expectOutcome(run(ListEventInfo, splitWords("event -i"), {"3"}), 0, "No event!\n");
    expectOutcome(run(ListEventInfo, splitWords("event -i")), 6, "Invalid controller ID '' specified\n");
}

TEST_F(EventCommand, ReadsNoValuePastTheTable) {
    expectOutcome(run(ListEventInfo, splitWords("event -v -v -v -v -v -v -v -v -v -v -v -v -v -v -c")), 1,
                  "Invalid event count '' specified\n");
}
