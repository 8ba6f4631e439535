// The exported symbols of the library: all sixty-five operations and nothing else.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include "simulator/q5sim/operation_names.h"

TEST(Exports, ExportsAllOperationsAndNothingElse) {
    EXPECT_EQ(std::size(q5sim::kOperationNames), 65u);
    void* library = dlopen(LIBRARY, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    for (const char* name : q5sim::kOperationNames)
        EXPECT_NE(dlsym(library, name), nullptr) << name;
    EXPECT_EQ(dlsym(library, "_ZN5q5sim9openWorldEv"), nullptr);
    EXPECT_EQ(dlsym(library, "_Z13worldFilePathPcm"), nullptr);
    dlclose(library);
}
