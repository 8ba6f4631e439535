// Reporting failures.
#include "util/result.h"

#include "tests/mock_adapter.h"

TEST(Fail, PrintsTheMessageAsALineAndReturnsTheCode) {
    int code = 0;
    EXPECT_EQ(outputOf([&] { code = fail(Result::unknownCommand, "100% wrong: %s"); }), "100% wrong: %s\n");
    EXPECT_EQ(code, 9);
}
