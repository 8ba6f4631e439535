# Writes the commands of cli_recovery(7) as a script, one call per command: "prepare COMMAND" for lines that begin
# with "$", and "expect COMMAND FILE" for those that begin with "#". FILE holds the output that the page shows.

function quoted(text) {
    gsub(/\\e/, "\\", text)
    gsub("/root/", work "/", text)
    sub(/^timeout 10 /, "timeout 1 ", text) # what does not answer, never does
    gsub(/'/, "'\\''", text)
    return "'" text "'"
}

/^\.Bd -literal/ { literal = 1; file = ""; next }
/^\.Ed/ { literal = 0 }
!literal { next }
/^\$ / { file = ""; print "prepare " quoted(substr($0, 3)); next }
/^# / {
    name = sprintf("%03d.shown", ++commands)
    file = work "/" name
    printf "" > file
    print "expect " quoted(substr($0, 3)), name
    next
}
file != "" { gsub(/\\e/, "\\"); gsub("/root/", work "/"); gsub("^/usr/", work "/usr/"); print > file }
