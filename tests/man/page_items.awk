# Prints each numbered step of cli_recovery(7) that lacks a command, or what to do otherwise.

function close_step() {
    if (step && !(command && otherwise))
        print heading ": step " step
    command = otherwise = 0
}

/^\.S[hs] / { heading = substr($0, 5) }
/^\.Bl -enum/ { numbered = 1; step = 0; next }
/^\.El/ && numbered { close_step(); numbered = step = 0 }
/^\.It/ && numbered { close_step(); step++ }
/^# / { command = 1 }
/Otherwise,/ { otherwise = 1 }
