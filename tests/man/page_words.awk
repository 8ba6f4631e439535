# Extracts the words of the commands from cli(8), one fact per line, in the format of
# completions/grammar.txt. Inconsistencies of the page are printed as lines that are not in any table:
#
#     COMMAND undescribed OPTION      in a form of the command, but not described by an item
#     COMMAND unused OPTION           described or mentioned, but not in any form
#     COMMAND stray LINE              a line of a kind not expected there

function flush_heading(    option) {
    for (option in used)
        if (!(option in described))
            print heading " undescribed " option
    for (option in described)
        if (!(option in used))
            print heading " unused " option
    for (option in mentioned)
        if (!(option in taken))
            print heading " unused " option
    split("", used)
    split("", described)
    split("", taken)
    split("", mentioned)
}

function new_heading(    i, n, word) {
    flush_heading()
    heading = ""
    n = split(substr($0, 5), word, " ")
    for (i = 1; i <= n; i++) {
        if (word[i] == "and")
            continue
        sub(/^\\&/, "", word[i])
        heading = heading == "" ? word[i] : heading " " word[i]
        print word[i]
        commands = commands " " word[i]
    }
}

# The kind of an option, by the name of its value; a flag has none.
function kind_of(value) {
    return value == "" ? "flag" : value == "file" ? "file" : "value"
}

function begin_form() {
    command = action = ""
    optional_action = optional_seen = 0
    split("", option_name)
    split("", option_value)
    options = 0
}

# One line of a form: the command, its action, or one option.
function form_line(line,    part, n, optional) {
    n = split(line, part, " ")
    optional = part[1] == "Op"
    if (optional) {
        sub(/^Op /, "", line)
        n = split(line, part, " ")
    }
    if (part[1] == "Ic" && n == 2 && !optional) {
        command = part[2]
        sub(/^\\&/, "", command)
    } else if (part[1] == "Fl" && part[2] == "a" && part[3] == "Cm" && n == 4) {
        action = part[4]
        optional_action = optional
    } else if (part[1] == "Fl" && (n == 2 || (n == 4 && part[3] == "Ar"))) {
        option_name[++options] = "-" part[2]
        option_value[options] = n == 4 ? part[4] : ""
    } else if (line != "Ar command" || !optional)
        print heading " stray " line
    if (line == "Ar command")
        takes_topic[command] = 1
}

function end_form(    i, k) {
    if (index(" " heading " ", " " command " ") == 0)
        print heading " stray form of " command
    uses = 0
    if (action == "" || optional_action)
        use[++uses] = command
    if (action != "")
        print (use[++uses] = command " -a " action)
    for (i = 1; i <= options; i++) {
        used[option_name[i] " " option_value[i]] = taken[option_name[i]] = 1
        for (k = 1; k <= uses; k++)
            print use[k] " " option_name[i] " " kind_of(option_value[i])
    }
}

# An item that describes an option.
function option_item(    value) {
    option = "-" $3
    value = $4 == "Ar" ? $5 : ""
    kind = kind_of(value)
    described[option " " value] = 1
    if (NF != 3 && !(NF == 5 && $4 == "Ar") || $2 != "Fl")
        print heading " stray " $0
}

# An item that describes a key of the settings, or one of the values of an option.
function word_item(line,    part, n, i, k, key) {
    n = split(line, part, " ")
    if (part[1] != "Cm") {
        print heading " stray " line
        return
    }
    if (n == 2) {
        for (k = 1; k <= uses; k++)
            print use[k] " " option " " kind " " part[2]
        return
    }
    key = part[2]
    for (k = 1; k <= uses; k++)
        print use[k] " " option " " key "="
    for (i = 3; i < n; i++)
        if (part[i] == "Cm")
            for (k = 1; k <= uses; k++)
                print use[k] " " option " " key "=" tolower(part[i + 1])
}

function end_item(text) {
    if (depth == 1)
        end_form()
    else if (depth > 2)
        word_item(text)
    else
        print heading " stray " text
}

/^\.Sh / { within = $0 == ".Sh COMMANDS"; next }
!within { next }

# A macro line may continue on the next line.
continued != "" { $0 = continued $0; continued = "" }
/\\$/ { continued = substr($0, 1, length($0) - 1); next }

/^\.Ss / { new_heading(); next }
/^\.Bl/ { depth++; next }
/^\.El/ { depth--; next }
/^\.It Xo/ { gathering = 1; gathered = ""; if (depth == 1) begin_form(); next }
/^\.Xc/ { gathering = 0; end_item(gathered); next }
gathering {
    if (depth == 1)
        form_line(substr($0, 2))
    else
        gathered = gathered (gathered == "" ? "" : " ") substr($0, 2)
    next
}
/^\.Fl [A-Za-z]( |$)/ && !/ Cm / { mentioned["-" $2] = 1; next }
/^\.It / && depth == 1 { print heading " stray " $0; next }
/^\.It / && depth == 2 { option_item(); next }
/^\.It / { word_item(substr($0, 5)) }

END {
    flush_heading()
    for (taker in takes_topic) {
        n = split(commands, topic, " ")
        for (i = 1; i <= n; i++)
            print taker " topic " topic[i]
    }
}
