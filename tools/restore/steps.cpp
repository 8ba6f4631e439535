// Runs the command functions of the steps.
#include "tools/restore/steps.h"

#include <cstdio>

#include "commands/buzz.h"
#include "commands/extent.h"
#include "commands/logdrv.h"
#include "commands/phydrv.h"
#include "config/import_set.h"
#include "util/words.h"

using CommandFunction = int(int wordCount, char** words);

// A word table like that of the program: one word per slot, truncated.
static void runCommand(CommandFunction* command, const std::vector<std::string>& texts) {
    static char slots[kMaxWords][kWordSize];
    char* words[kMaxWords];
    int count = 0;
    for (int i = 0; i < kMaxWords; ++i) {
        slots[i][0] = '\0';
        words[i] = slots[i];
    }
    for (const std::string& text : texts)
        if (count < kMaxWords)
            std::snprintf(words[count++], kWordSize, "%s", text.c_str());
    command(count, words);
}

void runStep(const Step& step) {
    switch (step.kind) {
    case StepKind::controller:
        ImpFileSetCtrlSettings(&step.controllerRecord);
        break;
    case StepKind::buzzer:
        runCommand(SetBuzzSettings, step.words);
        break;
    case StepKind::drive:
        ImpFileSetPhydrvSettings(&step.driveRecord);
        break;
    case StepKind::speed:
        runCommand(Set3GSpeed, step.words);
        break;
    case StepKind::split:
        runCommand(SplitExtent, step.words);
        break;
    case StepKind::create:
        CreateOnExtents(step.arrayRecord);
        break;
    case StepKind::array:
        runCommand(SetLogDrvSettings, step.words);
        break;
    case StepKind::spare:
        runCommand(SpareExtent, step.words);
        break;
    }
    std::fflush(stdout);
}
