# bash completion for q5sim.                                                     -*- shell-script -*-

# The commands as "q5sim --help" prints them; a test compares them.
_q5sim_usage() {
    cat <<'END'
status [--check]
why
save FILE
load FILE
reset
advance SECONDS | --until-idle [--limit SECONDS]
speed N
fail-drive CTRL DRIVE
pull-drive CTRL DRIVE
insert-drive CTRL DRIVE [--blank | --foreign | --same]
replace-drive CTRL DRIVE
media-errors CTRL DRIVE N [--at PERCENT]
smart-fail CTRL DRIVE
smart-ok CTRL DRIVE
battery CTRL charging|discharging|full|failed|missing [--celsius T]
sensor CTRL ENCLOSURE fan|temperature|5v|12v VALUE
pull-enclosure CTRL ENCLOSURE
insert-enclosure CTRL ENCLOSURE
swap-controller CTRL
power-cut
refuse OPERATION [--times N] [--after N] [--result R]
delay OPERATION SECONDS
hang OPERATION
zero OPERATION
short OPERATION
rules
clear-rules
END
}

# The operations that rules can name.
_q5sim_operations() {
    cat <<'END'
q5_PauseMigration
q5_ResumeMigration
q5_activateLogDrv
q5_addHBAArray
q5_addHBAExtentToArray
q5_delDiskArray
q5_deleteHBAExtent
q5_discover
q5_finalize
q5_freeHBAExtent
q5_getAryLostDisk
q5_getBatteryInfo
q5_getBuzzerStatus
q5_getControllerInfo
q5_getControllerSettings
q5_getDataTransferSpeed
q5_getDiscoverPath
q5_getDriverInfo
q5_getEnclosureInfo
q5_getEnclosureStatus
q5_getHBAEvents
q5_getHBAMediaPatrolProgress
q5_getLogDrvInfo
q5_getLogDrvInitProgress
q5_getLogDrvSettings
q5_getLogDrvSynchProgress
q5_getMigrationProgress
q5_getNumberOfHBA
q5_getPhyDrvInfo
q5_getPhyDrvLocateStatus
q5_getPhyDrvSettings
q5_getRebuildProgress
q5_getRedundancyCheckProgress
q5_initialize
q5_locateLogDrv
q5_locatePhyDrv
q5_migrateHBAArray
q5_pauseHBAMediaPatrol
q5_pauseLogDrvInit
q5_pauseRebuild
q5_pauseRedundancyCheck
q5_removeHBADiskMDD
q5_restartRebuild
q5_resumeHBAMediaPatrol
q5_resumeLogDrvInit
q5_resumeRebuild
q5_resumeRedundancyCheck
q5_setControllerSettings
q5_setDataTransferSpeed
q5_setLogDrvSettings
q5_setPhyDrvSettings
q5_spareHBAExtent
q5_splitHBAExtent
q5_startHBAMediaPatrol
q5_startHBARebuildExtent
q5_startLogDrvInit
q5_startRedundancyCheck
q5_stopHBAMediaPatrol
q5_stopLocateLogDrv
q5_stopLocatePhyDrv
q5_stopLogDrvInit
q5_stopRebuild
q5_stopRedundancyCheck
q5_turnOffBuzzer
q5_turnOnBuzzer
END
}

# Reads the usage of the command $1: sets slots, its arguments in order, kinds, for each option flag or
# value, and groups, a number that is the same for options that exclude each other.
_q5sim_read_command() {
    local line token option="" group=0 separated=1
    while read -r line; do
        [[ $line == "$1" || $line == "$1 "* ]] || continue
        line=${line#"$1"}
        for token in ${line//[][]/}; do
            if [[ $token == "|" ]]; then
                option="" separated=""
                continue
            elif [[ $token == --* ]]; then
                [[ $separated ]] && ((++group))
                option=$token kinds[$option]=flag groups[$option]=$group order+=("$option")
            elif [[ $option ]]; then
                kinds[$option]=value option=""
            else
                slots+=("$token")
            fi
            separated=1
        done
    done < <(_q5sim_usage)
}

# Sets given, the number of arguments before the current word, and marks the groups of the options among
# these words as used. Returns 1 when the current word is the value of an option.
_q5sim_read_words() {
    local i word
    for ((i = 2; i < COMP_CWORD; ++i)); do
        word=${COMP_WORDS[i]}
        if [[ $word != -* ]]; then
            ((++given))
            continue
        fi
        [[ ${groups[$word]} ]] && used[${groups[$word]}]=1
        [[ ${COMP_WORDS[i + 1]} == "=" ]] && ((++i)) # the shell splits --at=5
        [[ ${kinds[$word]} == value ]] && ((++i >= COMP_CWORD)) && return 1
    done
    return 0
}

# The options that can still be given.
_q5sim_options() {
    local option
    for option in "${order[@]}"; do
        [[ ${used[${groups[$option]}]} ]] || echo "$option"
    done
}

_q5sim() {
    local cur=${COMP_WORDS[COMP_CWORD]} candidates="" given=0
    local -a slots=() order=() used=()
    local -A kinds=() groups=()
    COMPREPLY=()
    if ((COMP_CWORD == 1)); then
        candidates="$(_q5sim_usage | cut -d ' ' -f 1) --help"
    else
        _q5sim_read_command "${COMP_WORDS[1]}"
        _q5sim_read_words || return
        if [[ $cur == -* ]]; then
            candidates="$(_q5sim_options) --help"
        elif ((given >= ${#slots[@]})); then
            candidates=$(_q5sim_options)
        elif [[ ${slots[given]} == FILE ]]; then
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -f -- "$cur")
            return
        elif [[ ${slots[given]} == OPERATION ]]; then
            candidates=$(_q5sim_operations)
        elif [[ ${slots[given]} == *"|"* ]]; then
            candidates=${slots[given]//|/ }
        fi
    fi
    mapfile -t COMPREPLY < <(compgen -W "$candidates" -- "$cur")
}

complete -F _q5sim q5sim
