"""Names of files on the control node that are made from names of hosts."""
from urllib.parse import quote, unquote


def file_name(host):
    """Never a path, never hidden: 'a/b' becomes 'a%2Fb', '..' '%2E.'."""
    name = quote(host, safe="")
    return "%2E" + name[1:] if name.startswith(".") else name


def host_name(name):
    """The host of a file or directory."""
    return unquote(name)
