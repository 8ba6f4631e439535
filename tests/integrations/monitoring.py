"""What the checks of the monitoring definitions share: the metrics that cli-status has, and uses of them."""
import glob
import json
import re

# Metrics of others, with the labels that may be used.
FOREIGN = {"up": {"job", "instance"}, "node_textfile_mtime_seconds": {"job", "instance", "file"}}
METRIC = r"\b(sataraid_\w+|node_\w+|up)\b"


def metric_tables(root):
    """The names in the tables of tools/status."""
    names = set()
    for path in glob.glob(f"{root}/tools/status/*metrics*.cpp"):
        with open(path, encoding="utf-8") as file:
            names.update(re.findall(r'\{"(sataraid_\w+)",', file.read()))
    return names


def samples(root):
    """Lines of metrics from the expected outputs of cli-status."""
    with open(f"{root}/tests/status/healthy.expected.prom", encoding="utf-8") as file:
        yield from file
    for path in glob.glob(f"{root}/tests/status/cases/*.json"):
        with open(path, encoding="utf-8") as file:
            yield from json.load(file)["metrics"]["with"]


def known_labels(root):
    """Each metric's labels."""
    labels = {name: set() for name in metric_tables(root)}
    for line in samples(root):
        match = re.match(r"(sataraid_\w+)(?:\{(.*)\})? ", line)
        if match:
            labels[match[1]].update(re.findall(r'(?:^|,)(\w+)="', match[2] or ""))
    return {name: each | {"job", "instance"} for name, each in labels.items()} | FOREIGN


def problems_of(query, labels):
    """Metrics that do not exist, and labels that a metric does not have."""
    plain = re.sub(r"instance:sataraid_\w+:\w+", "", query)
    problems = [f"unknown metric {name} in {query}" for name in re.findall(METRIC, plain) if name not in labels]
    for name, matchers in re.findall(METRIC + r"\{([^}]*)\}", plain):
        for label in re.findall(r"(\w+)\s*[=!]", matchers):
            if label not in labels.get(name, {label}):
                problems.append(f"{name} has no label {label}: {query}")
    return problems
