#!/usr/bin/env python3
"""Runs the modules for settings in isolation, each over a simulated world.

Usage: settings_modules_test.py PROGRAMS, the directory of the built
programs. Ends with 77 without Ansible.
"""
import json

import module_case
from module_case import new_world, run, script


def settings_texts(result):
    return [command[-1] for command in result["commands"]]


class ControllerTest(module_case.ModuleTest):
    def test_all_settings_of_one_controller(self):
        world = new_world()
        wanted = {"rebuild_rate": 1, "sync_rate": 2, "init_rate": 3,
                  "migrate_rate": 4, "patrol_rate": 255, "smart_poll": 5,
                  "enclosure_poll": 6, "smart": False, "auto_rebuild": False,
                  "rebuild_policy": True}
        result = run("controller_settings", world, controller=0, **wanted)
        self.assertTrue(result["changed"])
        self.assertEqual(settings_texts(result), [
            "rebuildrate=1,syncrate=2,initrate=3,migraterate=4,mprate=255,"
            "smartpoll=5,encpoll=6,smart=disable,autorebuild=disable,"
            "rebuildpolicy=enable"])
        first, second = self.work.read_world(world)["controllers"]
        self.assertEqual(first["rates"], {
            "rebuild": 1, "synchronization": 2, "initialization": 3,
            "migration": 4, "mediaPatrol": 255})
        self.assertEqual(
            [first[key] for key in ("smartPollMinutes", "smartCheck",
                                    "enclosurePollMinutes", "autoRebuild",
                                    "rebuildPolicy")],
            [5, False, 6, False, True])
        self.assertEqual(second["rates"]["rebuild"], 128)
        again = run("controller_settings", world, controller=0, **wanted)
        self.assertEqual((again["changed"], again["commands"]), (False, []))

    def test_check_mode(self):
        world = new_world()
        self.work.q5sim(world, "refuse", "q5_set*", "--after", "1000000")
        before = self.work.world(world).read_bytes()
        result = run("controller_settings", world, check_mode=True,
                     rebuild_rate=9)
        self.assertTrue(result["changed"])
        self.assertEqual(result["diff"], {
            "before": {"controller 0": {"rebuild_rate": 128},
                       "controller 1": {"rebuild_rate": 128}},
            "after": {"controller 0": {"rebuild_rate": 9},
                      "controller 1": {"rebuild_rate": 9}}})
        self.assertEqual(self.work.world(world).read_bytes(), before)

    def test_refused(self):
        world = new_world()
        self.work.q5sim(world, "refuse", "q5_setControllerSettings", "--after",
                        "1")
        result = run("controller_settings", world, rebuild_rate=9)
        self.assert_failed(result, "controller 1: the change is not in "
                           "effect: rebuild_rate is 128, not 9")
        self.assertTrue(result["changed"])  # controller 0 was
        self.assertEqual(list(result["diff"]["after"]), ["controller 0"])

    def test_unreadable_settings_are_not_replaced(self):
        for times in "1", "2":
            world = new_world()
            self.work.q5sim(world, "refuse", "q5_getControllerSettings",
                            "--times", times)
            result = run("controller_settings", world, rebuild_rate=9)
            self.assert_failed(result, "controller 0: its settings cannot "
                               "be read, so nothing was changed")
            for one in self.work.read_world(world)["controllers"]:
                self.assertEqual(one["rates"]["rebuild"], 128)

    def test_unreadable_afterward(self):
        world = new_world()
        self.work.q5sim(world, "refuse", "q5_getControllerSettings", "--after",
                        "3")
        self.assert_failed(
            run("controller_settings", world, rebuild_rate=9),
            "controller 0: ", "its settings can no longer be read")

    def test_another_setting_changed_too(self):
        cli = self.work.programs / "cli-rehearse"
        both = script(f'{cli} "$@"; {cli} ctrl -a mod -i 0 -s syncrate=7\n')
        self.assert_failed(
            run("controller_settings", new_world(), controller=0,
                rebuild_rate=9, cli_path=both),
            "sync_rate changed too, from 128 to 7")

    def test_message_and_status_of_cli(self):
        fails = script("echo what is wrong; exit 5\n")
        self.assert_refused("controller_settings", new_world(),
                            "cli ended with status 5: what is wrong",
                            rebuild_rate=9, cli_path=fails)

    def test_no_controller(self):
        world = new_world()
        self.assert_refused("controller_settings", world,
                            "there is no controller 7", controller=7,
                            rebuild_rate=9)
        self.work.q5sim(world, "refuse", "q5_initialize")
        self.assert_failed(run("controller_settings", world, rebuild_rate=9),
                           "no controller could be read: 1 problem, unknown")

    def test_arguments(self):
        world = new_world()
        for name, value in (("rebuild_rate", 0), ("rebuild_rate", 256),
                            ("smart_poll", -1), ("controller", 65536)):
            self.assert_refused("controller_settings", world,
                                f"{name} is {value}, not ", **{name: value})
        for name, value in (("rebuild_rate", "many"), ("smart", "perhaps")):
            self.assert_refused("controller_settings", world,
                                f"argument '{name}'", **{name: value})
        self.assert_refused("controller_settings", world,
                            "Unsupported parameters", rebuildrate=3)


class DriveTest(module_case.ModuleTest):
    def test_one_drive(self):
        world = new_world()
        result = run("drive_settings", world, controller=0, drive=3,
                     write_cache=False, ncq=False)
        self.assertEqual(result["commands"], [[
            "cli", "phydrv", "-a", "mod", "-p", "3", "-i", "0", "-s",
            "writecache=disable,ncq=disable"]])
        caches = [drive["writeCache"] for drive
                  in self.work.read_world(world)["controllers"][0]["drives"]]
        self.assertEqual(caches, [True, True, False] + [True] * 5)

    def test_serial_number(self):
        world = new_world()
        serial = self.work.read_world(world)["controllers"][1]["drives"][2][
            "serial"]
        result = run("drive_settings", world, serial=serial,
                     write_cache=False)
        self.assertEqual([command[4:8] for command in
                          [one[1:] for one in result["commands"]]],
                         [["3", "-i", "1", "-s"]])
        self.assert_refused("drive_settings", world, "there is no drive XY",
                            serial="XY", write_cache=False)

    def test_drive_beyond_the_sixteenth(self):
        def add(world):
            one = world["controllers"][1]
            for number in range(4, 20):
                one["drives"].append({
                    **one["drives"][0], "id": number, "extents": [],
                    "channel": number, "serial": f"S{number}"})
        world = new_world(add)
        result = run("drive_settings", world, controller=1, drive=20,
                     write_cache=False)
        self.assertNotIn("failed", result)
        drives = self.work.read_world(world)["controllers"][1]["drives"]
        self.assertEqual([drive["id"] for drive in drives
                          if not drive["writeCache"]], [19])

    def test_unsupported_queuing(self):
        world = new_world()
        self.assert_refused("drive_settings", world,
                            "drive 1 of controller 0 does not support tcq",
                            tcq=True, write_cache=False)
        result = run("drive_settings", world, tcq=True, write_cache=False,
                     skip_unsupported=True)
        self.assertNotIn("failed", result)
        self.assertEqual(set(settings_texts(result)), {"writecache=disable"})

    def test_refused(self):
        world = new_world()
        self.work.q5sim(world, "refuse", "q5_setPhyDrvSettings")
        self.assert_failed(
            run("drive_settings", world, write_cache=False),
            "drive 1 of controller 0: the change is not in effect: "
            "write_cache is True, not False")

    def test_unreadable_settings_are_not_replaced(self):
        world = new_world()
        self.work.q5sim(world, "refuse", "q5_getPhyDrvSettings",
                        "--after", "5", "--times", "1")
        result = run("drive_settings", world, write_cache=False)
        self.assert_failed(result, "drive 6 of controller 0: its settings "
                           "cannot be read")
        for one in self.work.read_world(world)["controllers"]:
            self.assertEqual({drive["writeCache"]
                              for drive in one["drives"]}, {True})

    def test_arguments(self):
        world = new_world()
        for message, arguments in (
                ("mutually exclusive", {"drive": 1, "serial": "x",
                                        "controller": 0}),
                ("missing parameter(s) required by 'drive'", {"drive": 1}),
                ("drive is 0, not 1 to", {"drive": 0, "controller": 0}),
                ("there is no drive 99", {"drive": 99, "controller": 0})):
            self.assert_refused("drive_settings", world, message,
                                write_cache=False, **arguments)


class LogicalDriveTest(module_case.ModuleTest):
    def drive(self, world, controller=0, number=0):
        return self.work.read_world(world)["controllers"][controller][
            "logicalDrives"][number]

    def test_all_settings(self):
        world = new_world()
        result = run("logical_drive_settings", world, controller=0,
                     logical_drive=1, write_policy="writethru", look_ahead=0,
                     consolidation=False, name="Disk = 1; \"new\" 'Ω'")
        self.assertEqual(settings_texts(result), [
            "writepolicy=writethru,lookahead=0,consolidation=disable,"
            "name=Disk = 1; \"new\" 'Ω'"])
        drive = self.drive(world, number=1)
        self.assertEqual([drive[key] for key in
                          ("cacheFlags", "lookahead", "consolidation",
                           "name")], [0, 0, False, "Disk = 1; \"new\" 'Ω'"])

    def test_every_policy(self):
        world = new_world()
        for policy, flags in (("auto", 8), ("bypass", 4), ("writethru", 0),
                              ("writeback", 1)):
            for changed in True, False:
                result = run("logical_drive_settings", world, controller=0,
                             current_name="Archive", write_policy=policy)
                self.assertEqual(result["changed"], changed, policy)
                self.assertEqual(self.drive(world)["cacheFlags"], flags)

    def test_battery_decides(self):
        world = new_world()
        arguments = {"write_policy": "writeback",
                     "write_policy_unprotected": "writethru"}
        run("logical_drive_settings", world, **arguments)
        for state, flags in (("failed", 0), ("charging", 1),
                             ("discharging", 0), ("full", 1)):
            self.work.q5sim(world, "battery", "0", state)
            run("logical_drive_settings", world, **arguments)
            self.assertEqual(self.drive(world)["cacheFlags"], flags, state)
            self.assertEqual(self.drive(world, 1)["cacheFlags"], 0)
        self.work.q5sim(world, "refuse", "q5_getBatteryInfo")
        self.assert_failed(
            run("logical_drive_settings", world, **arguments),
            "the battery cannot be read, so nothing was changed")

    def test_names_that_cli_cannot_set(self):
        world = new_world()
        for name in ("", "a" * 32, "ä" * 16, " a", "a ", "a,b", "a\nb",
                     "my LookAhead", "no Consolidation", "writepolicy"):
            self.assert_refused("logical_drive_settings", world,
                                "cli cannot set the name",
                                controller=0, logical_drive=0, name=name)

    def test_longest_name(self):
        world = new_world()
        for name in "a" * 31, "ä" * 15 + "b", "name=smart=enable":
            result = run("logical_drive_settings", world, controller=0,
                         logical_drive=0, name=name)
            self.assertNotIn("failed", result)
            self.assertEqual(self.drive(world)["name"], name)

    def test_ambiguous_name(self):
        def same(world):
            for one in world["controllers"][0]["logicalDrives"]:
                one["name"] = "Twin"
        self.assert_refused("logical_drive_settings", new_world(same),
                            "this is not one logical drive, but logical "
                            "drive 0 of controller 0, logical drive 1",
                            current_name="Twin", look_ahead=1)

    def test_refused(self):
        world = new_world()
        self.work.q5sim(world, "refuse", "q5_setLogDrvSettings")
        self.assert_failed(
            run("logical_drive_settings", world, look_ahead=1),
            "logical drive 0 of controller 0: the change is not in effect: "
            "look_ahead is 4, not 1")

    def test_arguments(self):
        world = new_world()
        for message, arguments in (
                ("look_ahead is 9, not 0 to 8", {"look_ahead": 9}),
                ("must be one of: writethru", {"write_policy": "fast"}),
                ("a name needs", {"name": "x"}),
                ("required by 'logical_drive'", {"logical_drive": 0}),
                ("there is no logical drive nobody",
                 {"current_name": "nobody", "look_ahead": 1})):
            self.assert_refused("logical_drive_settings", world, message,
                                **arguments)


class IncompleteListTest(module_case.ModuleTest):
    """All objects are wanted, and the adapter does not list all of them."""

    def test_refused_lists(self):
        for module, operation, what, arguments in (
                ("drive_settings", "q5_getPhyDrvInfo", "drives",
                 {"write_cache": False}),
                ("logical_drive_settings", "q5_getLogDrvInfo",
                 "logical drives", {"look_ahead": 1})):
            world = new_world()
            self.work.q5sim(world, "refuse", operation)
            self.assert_failed(
                run(module, world, **arguments),
                f"not all {what} of controller 0 could be read, so nothing "
                "was changed")

    def test_unknown_number(self):
        world = new_world()
        self.work.q5sim(world, "refuse", "q5_getControllerInfo")
        result = run("drive_settings", world, write_cache=False)
        self.assert_failed(result, "not all drives of controller 0")
        for one in self.work.read_world(world)["controllers"]:
            self.assertEqual({drive["writeCache"]
                              for drive in one["drives"]}, {True})

    def test_one_of_an_incomplete_list(self):
        world = new_world()
        self.work.q5sim(world, "refuse", "q5_getControllerInfo")
        result = run("drive_settings", world, controller=0, drive=3,
                     write_cache=False)
        self.assertNotIn("failed", result)
        self.assertTrue(result["changed"])

    def test_missing_controller(self):
        lists_one = script("printf '%s' '" + json.dumps({
            "format": 1, "controllerCount": 2, "summary": "",
            "controllers": [{"id": 0, "settings": None}]}) + "'\n")
        self.assert_failed(
            run("controller_settings", new_world(), rebuild_rate=9,
                status_path=lists_one), "not all controllers could be read")


if __name__ == "__main__":
    module_case.main()
