// The detailed text and the HTML page that cli-status must print, as other programs derive them from the
// expected output of --json.
#pragma once

#include <string>

#include "tests/e2e/harness.h"

// What -v must print.
std::string expectedVerbose(const Session& session, const std::string& document);

// Writes the page in a session and compares it with the expected one. Its time is that of the run.
void expectPage(Session* session, int status, const std::string& document);
