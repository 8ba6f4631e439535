"""The report on a fleet as an HTML page and as a table.

Every string of a host goes through show(), which escapes it. The page loads
nothing and runs nothing.
"""
import base64
import hashlib
import time
from html import escape

from ansible_collections.sataraid.cli.plugins.module_utils import fleet

MAX_HOSTS = 20  # listed by name for a version or batch
MAX_ROWS = 200  # of a list of batches or logical drives
MAX_PROBLEMS = 8  # of a host

STYLE = """
:root { color-scheme: light dark; --page: #f4f5f7; --text: #1a1c1f;
  --line: #868d95; --ok: #e0f3e3; --ok-text: #0c4a1d; --warning: #ffe7ad;
  --warning-text: #523600; --critical: #b3161b; --critical-text: #ffffff;
  --unknown: #e8defa; --unknown-text: #3f1273; }
@media (prefers-color-scheme: dark) {
  :root { --page: #121417; --text: #e8eaed; --line: #77808a; --ok: #14401f;
  --ok-text: #bdf0c8; --warning: #513a00; --warning-text: #ffe09a;
  --critical: #ff9389; --critical-text: #300000; --unknown: #3d2466;
  --unknown-text: #e7daff; } }
body { margin: 0 auto; padding: 1rem; max-width: 80rem;
  background: var(--page); color: var(--text);
  font: 100%/1.45 system-ui, sans-serif; overflow-wrap: anywhere; }
table { width: 100%; border-collapse: collapse; }
caption { text-align: left; padding: .25rem 0; }
th, td { padding: .3rem .45rem; border: 1px solid var(--line);
  text-align: left; vertical-align: top; }
th { overflow-wrap: normal; }
td:first-child { min-width: 8rem; }
ul { margin: 0; padding: 0; list-style: none; }
.badge { padding: 0 .45rem; border: 1px solid; border-radius: .25rem;
  font-weight: 600; overflow-wrap: normal; }
.ok { background: var(--ok); color: var(--ok-text); }
.warning { background: var(--warning); color: var(--warning-text); }
.critical { background: var(--critical); color: var(--critical-text); }
.unknown { background: var(--unknown); color: var(--unknown-text); }
"""


def show(text):
    return f"<bdi>{escape(text)}</bdi>"


def badge(severity):
    return f'<span class="badge {severity}">{severity}</span>'


def some(items, most):
    """The first items as escaped text, and how many there are beyond."""
    items = list(items)
    shown = ", ".join(show(item) for item in items[:most])
    beyond = len(items) - most
    return shown + (f" and {beyond} more" if beyond > 0 else "")


def table(caption, heads, rows):
    """The cells of a row are HTML already."""
    head = "".join(f'<th scope="col">{one}</th>' for one in heads)
    lines = "\n".join(
        "<tr>" + "".join(f"<td>{cell}</td>" for cell in row) + "</tr>"
        for row in rows[:MAX_ROWS] if row)
    beyond = len(rows) - MAX_ROWS
    more = f"<p>And {beyond} more.</p>" if beyond > 0 else ""
    return (f"<table><caption>{caption}</caption><thead><tr>{head}</tr>"
            f"</thead>\n<tbody>\n{lines}\n</tbody></table>{more}\n")


def problem_list(record):
    problems = record["problems"]
    lines = [f"<li>{badge(severity)} {show(text)}</li>"
             for severity, text in problems[:MAX_PROBLEMS]]
    beyond = len(problems) - MAX_PROBLEMS
    if beyond > 0:
        lines.append(f"<li>and {beyond} more</li>")
    return f"<ul>{''.join(lines)}</ul>" if lines else "none"


def controller_firmware(record):
    return sorted({version for what, version in record["versions"]
                   if what == "controller firmware"})


def moment(seconds):
    if seconds is None:
        return "never"
    return time.strftime("%Y-%m-%d %H:%M:%S UTC", time.gmtime(seconds))


def hosts_section(records):
    """Healthy hosts have short rows, so all of them are listed."""
    rows = ["<tr>" + "".join(f"<td>{cell}</td>" for cell in (
        show(record["host"]), badge(record["status"]), problem_list(record),
        some(controller_firmware(record), 4), moment(record["time"])))
        + "</tr>" for record in records]
    heads = "".join(f'<th scope="col">{one}</th>' for one in (
        "Host", "State", "Problems", "Firmware", "Read"))
    return (f"<h2>Hosts, the worst first</h2>\n<table><thead><tr>{heads}"
            "</tr></thead>\n<tbody>\n" + "\n".join(rows)
            + "\n</tbody></table>\n")


def versions_section(records):
    parts = ["<h2>Firmware differences</h2>\n"]
    different = fleet.version_differences(records)
    if not different:
        parts.append("<p>There are none.</p>\n")
    for what, versions in different.items():
        rows = [(show(version), str(count), some(hosts, MAX_HOSTS))
                for version, (count, hosts) in versions.items()]
        parts.append(table(show(what), ("Version", "How many", "Hosts"),
                           rows))
    return "".join(parts)


def batches_section(records, prefix):
    rows = [(show(model), show(start), str(one["drives"]),
             str(one["troubled"]), some(one["hosts"], MAX_HOSTS))
            for model, start, one in fleet.batches(records, prefix)]
    heads = ("Model", "Serial numbers begin with", "Drives",
             "With problems", "Hosts")
    together = [(show(host), show(label), show(" ".join(kind)))
                for host, label, kind
                in fleet.arrays_of_one_batch(records, prefix)]
    return ("<h2>Drives of one batch</h2>\n"
            + table(f"The same model, and the same first {prefix} characters "
                    "of the serial number; those with the most problems "
                    "first", heads, rows)
            + table("Redundant logical drives whose members are all of one "
                    "batch", ("Host", "Logical drive", "Batch"), together))


def page_head(title):
    digest = base64.b64encode(hashlib.sha256(STYLE.encode()).digest())
    return ('<!DOCTYPE html>\n<html lang="en">\n<head>\n'
            '<meta charset="utf-8">\n'
            '<meta http-equiv="Content-Security-Policy" content="default-src '
            f"'none'; style-src 'sha256-{digest.decode()}'\">\n"
            '<meta name="viewport" content="width=device-width">\n'
            f"<title>{escape(title)}</title>\n<style>{STYLE}</style>\n"
            f"</head>\n<body>\n<h1>{escape(title)}</h1>\n")


def summary(records):
    parts = []
    for status in ("critical", "unknown", "warning", "ok"):
        number = sum(record["status"] == status for record in records)
        parts.append(f"{number} {status}")
    return f"{len(records)} hosts: " + ", ".join(parts)


def page(records, title, prefix):
    return (page_head(title) + f"<p>{summary(records)}</p>\n"
            + hosts_section(records) + versions_section(records)
            + batches_section(records, prefix) + "</body>\n</html>\n")


def text_table(records):
    """One line for each host, the worst first."""
    rows = [("HOST", "STATE", "CRIT", "UNKN", "WARN", "FIRMWARE", "WORST")]
    for record in records:
        worst = record["problems"][0][1] if record["problems"] else "-"
        rows.append((record["host"], record["status"],
                     *map(str, fleet.counts(record)),
                     ",".join(controller_firmware(record)) or "-", worst))
    widths = [max(map(len, column)) for column in zip(*rows)]
    return "".join("  ".join(
        cell.ljust(width) for cell, width in zip(row, widths)).rstrip() + "\n"
        for row in rows)
