"""Texts and words for derive_verbose and derive_page, from the expected output of --json."""
import re

NO_ARRAY = NO_ENCLOSURE = 255
WEIGHTS = {"info": 0, "warning": 1, "unknown": 2, "critical": 3}
HIDDEN = re.compile("[\x00-\x1f\x7f-\x9f\u200e\u200f\u2028-\u202e\u2066-\u2069\ufeff\udc80-\udcff]")
NONCHARACTER = re.compile("[\ufdd0-\ufdef" + "".join(chr(plane << 16 | low) for plane in range(17)
                                                       for low in (0xFFFE, 0xFFFF)) + "]")
REFERENCES = {"&": "&amp;", "<": "&lt;", ">": "&gt;", '"': "&quot;", "'": "&#39;"}


# Texts.

def raw(record, key):
    """A text as the adapter reports it; bytes that are not UTF-8 become surrogates."""
    if key + "Bytes" in record:
        return bytes.fromhex(record[key + "Bytes"]).decode("utf-8", "surrogateescape")
    return record[key]


def escaped(match):
    return "".join(f"\\x{byte:02x}" for byte in match[0].encode("utf-8", "surrogateescape"))


def printable(text):
    return HIDDEN.sub(escaped, text.replace("\\", "\\\\"))


def markup(line):
    """HTML of a line that is printable already."""
    return "".join(REFERENCES.get(each, each) for each in NONCHARACTER.sub(escaped, line))


def isolated(text):
    return f"<bdi>{markup(printable(text))}</bdi>" if text.strip(" ") else "(empty)"


def counted(count, noun):
    return f"{count} {noun}{'' if count == 1 else 's'}"


def version(record):
    return ".".join(str(record[key]) for key in ("major", "minor", "third", "fourth"))


def badge(word, kind):
    return f'<span class="badge {kind}">{word}</span>'


def state_badge(severities):
    worst = max(severities, key=WEIGHTS.get, default="info")
    word = "ok" if worst == "info" else worst
    return badge(word, word)


# Objects.

def state(drive):
    words = drive["info"]["functionalStatusText"]
    return next((word for word in ("critical", "degraded", "online") if word in words), "offline")


def battery_word(controller):
    """None: it could not be read."""
    battery = controller["battery"]
    return None if battery is None else battery["statusText"]


def has_battery(controller):
    return battery_word(controller) not in (None, "no battery")


def can_access(extent):
    return "accessible" in extent["accessText"]


def signed(number):
    return number - (1 << 32) if number >> 31 else number


def volts(millivolts):
    return f"{millivolts // 1000}.{millivolts % 1000:03} V"


def place(info, otherwise=""):
    where = f"channel {info['channel']}"
    return where + (otherwise if info["enclosureId"] == NO_ENCLOSURE else f", enclosure {info['enclosureId']}")


def is_rebuilt(drive, array_id):
    return any(each["arrayId"] == array_id and "rebuilding" in each["stateText"] for each in drive["info"]["extent"])
