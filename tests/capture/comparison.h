// Captures the world of a session and compares everything that the programs print about it and its copy.
#pragma once

#include "tests/e2e/harness.h"

// What cli lists and exports, and what cli-status --json prints, one after another.
std::string everythingOf(Session* session);

// Captures the session's world as the world of another session.
ProcessOutcome capture(Session* session, Session* copy);

// Expects a complete capture whose copy lists the same.
void expectEqualCopy(Session* session);
