"""Runs the programs of the managed host, and reads a snapshot."""
import json
import subprocess

FORMAT = 1  # of the snapshots that this collection understands


def program_options(*names):
    """The arguments that name the programs."""
    defaults = {"cli_path": "cli", "status_path": "cli-status",
                "backup_path": "cli-backup"}
    options = {name: {"type": "path", "default": defaults[name]}
               for name in names}
    options["timeout"] = {"type": "int", "default": 120}
    return options


def require_range(module, name, low, high):
    value = module.params[name]
    if value is not None and not low <= value <= high:
        module.fail_json(msg=f"{name} is {value}, not {low} to {high}")


def run(module, name, arguments):
    """Exit status, output and error output of a program."""
    program = module.get_bin_path(module.params[name], required=True)
    try:
        process = subprocess.run(
            [program, *arguments], stdin=subprocess.DEVNULL, check=False,
            stdout=subprocess.PIPE, stderr=subprocess.PIPE,
            timeout=module.params["timeout"])
    except subprocess.TimeoutExpired:
        module.fail_json(msg=f"{program} took longer than "
                             f"{module.params['timeout']} seconds")
    except OSError as error:
        module.fail_json(msg=f"cannot run {program}: {error}")
    return (process.returncode, decode(process.stdout),
            decode(process.stderr))


def decode(output):
    return output.decode("utf-8", "backslashreplace")


def parse_snapshot(text):
    """The snapshot, and what is wrong with it."""
    try:
        snapshot = json.loads(text)
    except ValueError as error:
        return None, f"the output is not JSON: {error}"
    if not isinstance(snapshot, dict) or snapshot.get("format") != FORMAT:
        return None, f"the output is not of format {FORMAT}"
    return snapshot, ""


def read_snapshot(module, controller=None, more=()):
    """The output of cli-status --json, of one controller or of all."""
    arguments = ["--json", *more]
    if controller is not None:
        arguments += ["-i", str(controller)]
    status, output, errors = run(module, "status_path", arguments)
    snapshot, problem = parse_snapshot(output)
    if snapshot is None:
        module.fail_json(msg=errors.strip() or problem, exit_status=status)
    return snapshot
