// Hands every operation on to the answer that a test gives.
#include "tests/snapshot/reply_stub.h"

#include "tests/stub_adapter.h"

Answer giveAnswer;
std::set<std::string> calledOperations;

int answer(const char* operation, void* reply, std::size_t size) {
    calledOperations.insert(operation);
    return giveAnswer(operation, reply, size);
}

int answerList(const char* operation, void* reply, std::size_t size) {
    return answer(operation, reply, size);
}

int answerControllers(const char* operation, std::uint32_t* count) {
    return answer(operation, count, sizeof *count);
}

int answerEvents(const char* operation, EventQuery*, void* reply, std::size_t size) {
    return answer(operation, reply, size);
}

void noteDrives(const char*, const char*) {}
