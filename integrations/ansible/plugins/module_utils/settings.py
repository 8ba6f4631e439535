"""Brings settings to the desired values, and reads every change back.

cli ends with status 0 even if the adapter refuses a change, and it writes
whole records: it would replace a record that it cannot read. So nothing is
changed unless every setting concerned could be read, and after each change
the settings of the object are read again and compared, also those that were
not to change.

A table of settings has a row for each: the option of the module, the key of
cli, the field of the snapshot, and the kind of the value.

A target is one object whose settings can be changed, as a dictionary:
  name        for messages, such as "drive 3 of controller 0"
  identity    what has to be the same when the settings are read back
  controller  ID of its controller
  select      words of cli that select it, "-a mod" included
  record      its settings in the snapshot; None if they could not be read
  wanted      desired values by option; the other options keep their values
"""
from ansible_collections.sataraid.cli.plugins.module_utils import programs

WRITE_POLICIES = (("auto", 8), ("writeback", 1), ("bypass", 4))


def write_policy(flags):
    """The word for the adapter's bits; automatic mode counts first."""
    for word, bit in WRITE_POLICIES:
        if flags & bit:
            return word
    return "writethru"


def switch_word(value):
    return "enable" if value else "disable"


KINDS = {  # what the snapshot has as a value, and the value as cli takes it
    "number": (int, str),
    "text": (str, str),
    "switch": (bool, switch_word),
    "policy": (write_policy, str),
}


LISTS = {  # the list in the snapshot, and the controller's number of them
    "drives": ("drives", "diskCount"),
    "logical drives": ("logicalDrives", "arrayCount"),
}


def values(table, record):
    """All settings of a record, by option."""
    return {option: KINDS[kind][0](record[field])
            for option, _, field, kind in table}


def settings_text(table, changes):
    """The value of cli's option -s."""
    return ",".join(f"{key}={KINDS[kind][1](changes[option])}"
                    for option, key, _, kind in table if option in changes)


def desired(module, table):
    """The values of all options that are set."""
    return {option: module.params[option] for option, _, _, _ in table
            if module.params.get(option) is not None}


def controllers(module, snapshot):
    """The controllers of a snapshot, or the one that the module names."""
    found = snapshot["controllers"]
    wanted = module.params["controller"]
    if wanted is not None:
        found = [one for one in found if one["id"] == wanted]
    if not found:
        module.fail_json(msg="no controller could be read: "
                             + snapshot["summary"])
    return found


def incomplete_list(module, snapshot, every):
    """The first list that lacks objects, in words; empty if none does."""
    if module.params["controller"] is None and (
            snapshot["controllerCount"] != len(snapshot["controllers"])):
        return "controllers"
    key, count = LISTS.get(every, (None, None))
    for one in controllers(module, snapshot) if key else ():
        if one["info"] is None or one["info"][count] != len(one[key]):
            return f"{every} of controller {one['id']}"
    return ""


def require_one(module, kind, wanted, found):
    """Fails unless exactly one target was found."""
    if not found:
        module.fail_json(msg=f"there is no {kind} {wanted}")
    if len(found) > 1:
        module.fail_json(msg=f"this is not one {kind}, but "
                             + ", ".join(one["name"] for one in found))


def plan(module, table, targets):
    """The targets to change, with their values before and after."""
    steps = []
    for target in targets:
        if target["record"] is None:
            module.fail_json(msg=f"{target['name']}: its settings cannot be "
                                 "read, so nothing was changed")
        before = values(table, target["record"])
        changes = {option: value
                   for option, value in target["wanted"].items()
                   if before[option] != value}
        if changes:
            steps.append({**target, "before": before, "changes": changes,
                          "after": {**before, **changes}})
    return steps


def describe(steps):
    """What Ansible shows with --diff."""
    return {side: {step["name"]: {option: step[side][option]
                                  for option in step["changes"]}
                   for step in steps} for side in ("before", "after")}


def differences(step, now):
    """What is not as it should be after a change, as sentences."""
    for option, wanted in step["after"].items():
        if now[option] == wanted:
            continue
        if option in step["changes"]:
            yield f"{option} is {now[option]}, not {wanted}"
        else:
            yield f"{option} changed too, from {wanted} to {now[option]}"


def read_back(module, table, step, find):
    """What is wrong with the target after its change."""
    snapshot = programs.read_snapshot(module, step["controller"])
    for target in find(module, snapshot):
        if target["name"] != step["name"]:
            continue
        if target["identity"] != step["identity"]:
            return "it is another one now"
        if target["record"] is None:
            return "its settings can no longer be read"
        return ", ".join(differences(step, values(table, target["record"])))
    return "it is no longer there"


def perform(module, table, step, find):
    """Changes one target. Returns what went wrong."""
    text = settings_text(table, step["changes"])
    status, output, errors = programs.run(
        module, "cli_path", [*step["select"], "-s", text])
    said = " ".join((output + errors).split())
    if status != 0:
        return f"cli ended with status {status}: {said}"
    problem = read_back(module, table, step, find)
    return problem and f"{problem}; cli said: {said or 'nothing'}"


def apply(module, table, find, choose, every=None):
    """The whole run of a settings module.

    find(module, snapshot) lists the targets of a snapshot, and
    choose(module, targets) those that are wanted, with their values.
    If all are wanted, "every" names the list that has to be complete.
    """
    snapshot = programs.read_snapshot(module, module.params["controller"])
    lacking = every and incomplete_list(module, snapshot, every)
    if lacking:
        module.fail_json(msg=f"not all {lacking} could be read, so nothing "
                             "was changed")
    steps = plan(module, table, choose(module, find(module, snapshot)))
    result = {"changed": bool(steps), "diff": describe(steps),
              "commands": [["cli", *step["select"], "-s",
                            settings_text(table, step["changes"])]
                           for step in steps]}
    done = []
    for step in [] if module.check_mode else steps:
        problem = perform(module, table, step, find)
        if problem:
            module.fail_json(
                msg=f"{step['name']}: the change is not in effect: {problem}",
                changed=bool(done), diff=describe(done),
                commands=result["commands"][:len(done) + 1])
        done.append(step)
    module.exit_json(**result)
