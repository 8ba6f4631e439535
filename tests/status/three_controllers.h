// Fixture of the tests of controllers that get another number, disappear or come back: three controllers,
// each with drives of its own.
#pragma once

#include "tests/status/history.h"

inline std::string isMissing(int number, const std::string& name) {
    return "critical: this host: the former controller " + std::to_string(number) +
           " is missing, with 3 drives, logical drive 0 " + name + "\n";
}
inline std::string wasNumber(int now, int former) {
    const std::string text = ": has another number; it was controller " + std::to_string(former) + "\n";
    return "info: controller " + std::to_string(now) + text;
}
inline std::string isBack(int number) {
    return "info: controller " + std::to_string(number) + ": is back\n";
}

struct ThreeControllers : Changes {
    Json three;

    void SetUp() override {
        Changes::SetUp();
        add("T", "Second");
        add("U", "Third");
        three = world["controllers"];
        saveBaseline();
        expectChanges(0, "");
    }
    void add(const std::string& serials, const std::string& name) {
        Json added = controller();
        int number = 0;
        for (Json& drive : added["drives"])
            drive["serial"] = serials + std::to_string(++number);
        added["logicalDrives"][0]["name"] = name;
        world["controllers"].push_back(added);
    }
    void remove(std::size_t number) { world["controllers"].erase(number); }
    // These of the three, in this order, as they are now.
    void place(const std::vector<std::size_t>& numbers) {
        world["controllers"] = Json::array();
        for (const std::size_t number : numbers)
            world["controllers"].push_back(three[number]);
    }
    void restore() { world["controllers"] = three; }
};
