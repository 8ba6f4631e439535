// Base of the tests that apply a configuration file to the mock adapter.
#pragma once

#include "config/import.h"
#include "tests/config/import_calls.h"

class ImportApply : public Configuration {
protected:
    void expectOutcome(const std::string& text, bool clear, int result, const std::string& output = "") {
        write(text);
        int applied = -1;
        EXPECT_EQ(outputOf([&] {
                      applied = SetDataFromConfigFile(path.c_str(), true, clear, 0, nullptr, 0, nullptr, 0,
                                                      nullptr);
                  }),
                  output);
        EXPECT_EQ(applied, result);
    }
    // The re-creation of one logical drive of controller 0, where there was none.
    void expectCreated(const std::string& block, const CreateArrayRequest& request) {
        expectChecks(1);
        expectLogDrvList(0, {});
        expectCreation(0, request);
        expectLogDrvList(0, {});
        expectOutcome(block, true, 0);
    }
    void expectRejected(const std::string& block, const std::string& output) {
        expectChecks(1);
        expectLogDrvList(0, {});
        expectLogDrvList(0, {});
        expectOutcome(block, true, 0, output);
    }
    void expectLogDrvModified(const std::string& block, const ExpectedLogDrvSettings& wanted) {
        expectChecks(1);
        expectLogDrvList(0, {listed(21, 4)});
        expectLogDrvChange(0, 4, wanted);
        expectOutcome(block, false, 0);
    }
    void expectCtrlApplied(const std::string& block, const ControllerSettings& wanted) {
        expectChecks(1);
        expectCtrlChange(0, wanted);
        expectOutcome(block, false, 0);
    }
};
