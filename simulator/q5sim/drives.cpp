// The commands for drives.
#include "simulator/q5sim/command.h"

namespace q5sim {

using DriveFault = std::function<Reason(Controller& controller, std::uint32_t drive, std::int64_t now)>;

// Runs a fault on the drive that the first two arguments name. done is what is printed: "failed", ...; the
// fault can add to it.
static int changeDrive(const Arguments& arguments, const std::string& done, bool skipFirst,
                       const DriveFault& inject) {
    std::int64_t drive = 0;
    if (!readNumber(arguments.words[1], INT32_MAX, drive) || drive == 0)
        return usageError(std::string(arguments.words[1]) + " is not a drive ID");
    const std::string name = "drive " + std::to_string(drive) + " of controller " + arguments.words[0];
    std::string headline;
    return changeController(
        arguments.words[0], headline, skipFirst, [&](Controller& controller, std::int64_t now) {
            Reason reason = inject(controller, static_cast<std::uint32_t>(drive - 1), now);
            headline = name + " " + done;
            return reason;
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
        return usageError(std::string(arguments.words[2]) + " is not a number of sectors");
    const int percent = arguments.options.atPercent;
    std::string done;
    return changeDrive(
        arguments, done, false, [&](Controller& controller, std::uint32_t drive, std::int64_t now) {
            std::uint64_t added = 0;
            Reason reason =
                addMediaErrors(controller, drive, static_cast<std::uint64_t>(count), percent, now, added);
            done = "has " + std::to_string(added) + (added == 1 ? " more bad sector" : " more bad sectors");
            if (percent >= 0)
                done += " at " + std::to_string(percent) + " percent";
            return reason;
        });
}

static int setSmart(const Arguments& arguments, const char* done, bool failure) {
    return changeDrive(arguments, done, true, [&](Controller& controller, std::uint32_t drive, std::int64_t) {
        return setSmartFailure(controller, drive, failure);
    });
}

int smartFailCommand(const Arguments& arguments) {
    return setSmart(arguments, "reports a SMART failure", true);
}

int smartOkCommand(const Arguments& arguments) {
    return setSmart(arguments, "no longer reports a SMART failure", false);
}

} // namespace q5sim
