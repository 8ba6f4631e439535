// Passes every operation to the function that a test provides.
#include "tests/snapshot/reply_stub.h"

#include "tests/stub_adapter.h"

Responder respondInTest;
std::set<std::string> calledOperations;

int respond(const char* operation, void* reply, std::size_t size) {
    calledOperations.insert(operation);
    return respondInTest(operation, reply, size);
}

int respondWithList(const char* operation, void* reply, std::size_t size) {
    return respond(operation, reply, size);
}

int respondWithCount(const char* operation, std::uint32_t* count) {
    return respond(operation, count, sizeof *count);
}

int respondWithEvents(const char* operation, EventQuery*, void* reply, std::size_t size) {
    return respond(operation, reply, size);
}

void recordDriveModel(const char*, const char*) {}
