# Writes each block of the pages' examples to a separate script, work/NN.example, and each part of a
# configuration file to a script that imports it. setup() brings the simulated hardware into the state that
# an example assumes.

function setup(line) {
    if (line ~ /rb -a start -l 0 /)
        return "cli ctrl -a mod -i 0 -s autorebuild=disable\nq5sim fail-drive 0 2\nq5sim replace-drive 0 2\n"
    return ""
}

function close_block() {
    if (text == "")
        return
    file = sprintf("%s/%02d.example", work, ++blocks)
    # The second and third block of cli_rehearsal(7) continue the block before.
    printf "%s%s%s", (text ~ /replace-drive 0 2/ ? "" : "q5sim reset\n"), before, text > file
    close(file)
    text = before = ""
}

/^\.Sh / { within = $0 == ".Sh EXAMPLES" }
!within { next }
/^\.Bd -literal/ { literal = 1; next }
/^\.Ed/ {
    if (config)
        text = text "EOF\ncli import -i -f file >shown\ngrep -q '<<' shown\ncli import -c -f file\n"
    close_block()
    literal = config = 0
    next
}
literal && /^\[/ && !config { config = 1; text = "cat >file <<EOF\n" }
config { text = text $0 "\n"; next }
literal && /^[#$] / {
    before = before setup($0)
    line = substr($0, 3)
    sub(/ cli-rehearse$/, " cli-rehearse </dev/null", line)
    gsub("/tmp/trial", work "/trial", line)
    gsub(/\\e/, "\\", line)
    text = text line "\n"
}
