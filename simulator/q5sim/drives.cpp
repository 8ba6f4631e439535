// Commands about drives.
#include "simulator/q5sim/command.h"

namespace q5sim {

using DriveFault = std::function<Reason(Controller& controller, std::uint32_t drive, std::int64_t now)>;

// Runs a fault on the drive that the first two arguments name. done: "failed", ...
static int changeDrive(const Arguments& arguments, const std::string& done, bool skipFirst,
                       const DriveFault& inject) {
    std::int64_t drive = 0;
    if (!readNumber(arguments.words[1], INT32_MAX, drive) || drive == 0)
        return usageError(std::string(arguments.words[1]) + " is no drive ID");
    const std::string headline = "drive " + std::to_string(drive) + " of controller " + arguments.words[0];
    return changeController(arguments.words[0], headline + " " + done, skipFirst,
                            [&](Controller& controller, std::int64_t now) {
                                return inject(controller, static_cast<std::uint32_t>(drive - 1), now);
                            });
}

int failDriveCommand(const Arguments& arguments) {
    return changeDrive(arguments, "failed", true,
                       [](Controller& controller, std::uint32_t drive, std::int64_t) {
                           return failDrive(controller, drive);
                       });
}

int pullDriveCommand(const Arguments& arguments) {
    return changeDrive(arguments, "removed", true, pullDrive);
}

int insertDriveCommand(const Arguments& arguments) {
    static constexpr const char* done[] = {"inserted again", "inserted, empty",
                                           "inserted, with a foreign configuration"};
    const NewDrive kind = arguments.options.newDrive;
    return changeDrive(arguments, done[static_cast<int>(kind)], true,
                       [&](Controller& controller, std::uint32_t drive, std::int64_t now) {
                           if (drive > kMaxDriveId)
                               return Reason("there is no slot for drive " + std::to_string(drive + 1));
                           return insertDrive(controller, drive, kind, now);
                       });
}

int replaceDriveCommand(const Arguments& arguments) {
    return changeDrive(arguments, "replaced by an empty one", true, replaceDrive);
}

int mediaErrorsCommand(const Arguments& arguments) {
    std::int64_t count = 0;
    if (!readNumber(arguments.words[2], INT32_MAX, count) || count == 0)
        return usageError(std::string(arguments.words[2]) + " is no number of sectors");
    const int percent = arguments.options.atPercent;
    std::string done = std::string("has ") + arguments.words[2] + " more bad sectors";
    if (percent >= 0)
        done += " at " + std::to_string(percent) + " percent";
    return changeDrive(
        arguments, done, false, [&](Controller& controller, std::uint32_t drive, std::int64_t now) {
            return addMediaErrors(controller, drive, static_cast<std::uint64_t>(count), percent, now);
        });
}

static int setSmart(const Arguments& arguments, const char* done, bool failure) {
    return changeDrive(arguments, done, true, [&](Controller& controller, std::uint32_t drive, std::int64_t) {
        return setSmartFailure(controller, drive, failure);
    });
}

int smartFailCommand(const Arguments& arguments) {
    return setSmart(arguments, "predicts its failure by SMART", true);
}

int smartOkCommand(const Arguments& arguments) {
    return setSmart(arguments, "predicts no failure by SMART any more", false);
}

} // namespace q5sim
