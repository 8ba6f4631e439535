# bash completion for cli.                                                       -*- shell-script -*-
# Written by cli-words out of the commands themselves and completions/bash.in.

# The words: one fact on a line, as completions/generate.cpp tells.
_cli_table() {
    cat <<'END'
?
? topic ?
? topic battery
? topic bga
? topic buzz
? topic ctrl
? topic enclosure
? topic event
? topic exit
? topic export
? topic extent
? topic help
? topic import
? topic init
? topic logdrv
? topic migrate
? topic mp
? topic phydrv
? topic rb
? topic rc
? topic sync
battery
bga
bga -i value
bga -l value
bga -a list
bga -a list -l value
bga -a list -i value
buzz
buzz -i value
buzz -c value
buzz -a list
buzz -a list -i value
buzz -a list -c value
buzz -a enable
buzz -a enable -i value
buzz -a disable
buzz -a disable -i value
ctrl
ctrl -v flag
ctrl -i value
ctrl -c value
ctrl -a list
ctrl -a list -v flag
ctrl -a list -i value
ctrl -a list -c value
ctrl -a mod
ctrl -a mod -i value
ctrl -a mod -s value
ctrl -a mod -s rebuildrate=
ctrl -a mod -s syncrate=
ctrl -a mod -s initrate=
ctrl -a mod -s migraterate=
ctrl -a mod -s mprate=
ctrl -a mod -s smartpoll=
ctrl -a mod -s encpoll=
ctrl -a mod -s smart=
ctrl -a mod -s smart=enable
ctrl -a mod -s smart=disable
ctrl -a mod -s autorebuild=
ctrl -a mod -s autorebuild=enable
ctrl -a mod -s autorebuild=disable
ctrl -a mod -s rebuildpolicy=
ctrl -a mod -s rebuildpolicy=enable
ctrl -a mod -s rebuildpolicy=disable
enclosure
enclosure -e value
enclosure -i value
enclosure -a list
enclosure -a list -e value
enclosure -a list -i value
enclosure -a locate
enclosure -a locate -e value
enclosure -a locate -i value
enclosure -a locate -s value
event
event -v flag
event -i value
event -c value
event -a list
event -a list -v flag
event -a list -i value
event -a list -c value
exit prompt
export
export -t value
export -t value 0
export -t value 1
export -t value 2
export -t value 3
export -f file
extent
extent -v flag
extent -p value
extent -i value
extent -c value
extent -a list
extent -a list -v flag
extent -a list -p value
extent -a list -i value
extent -a list -c value
extent -a spare
extent -a spare -p value
extent -a spare -i value
extent -a spare -e value
extent -a spare -l value
extent -a free
extent -a free -p value
extent -a free -i value
extent -a free -e value
extent -a add
extent -a add -p value
extent -a add -i value
extent -a add -e value
extent -a add -l value
extent -a split
extent -a split -p value
extent -a split -i value
extent -a split -e value
extent -a split -o value
extent -a delete
extent -a delete -p value
extent -a delete -i value
extent -a delete -e value
help
help topic ?
help topic battery
help topic bga
help topic buzz
help topic ctrl
help topic enclosure
help topic event
help topic exit
help topic export
help topic extent
help topic help
help topic import
help topic init
help topic logdrv
help topic migrate
help topic mp
help topic phydrv
help topic rb
help topic rc
help topic sync
import
import -k value
import -p value
import -l value
import -f file
import -i flag
import -c flag
import -a flag
init
init -l value
init -i value
init -a list
init -a list -l value
init -a list -i value
init -a start
init -a start -l value
init -a start -i value
init -a stop
init -a stop -l value
init -a stop -i value
init -a pause
init -a pause -l value
init -a pause -i value
init -a resume
init -a resume -l value
init -a resume -i value
logdrv
logdrv -v flag
logdrv -i value
logdrv -l value
logdrv -c value
logdrv -a list
logdrv -a list -v flag
logdrv -a list -i value
logdrv -a list -l value
logdrv -a list -c value
logdrv -a mod
logdrv -a mod -l value
logdrv -a mod -i value
logdrv -a mod -s value
logdrv -a mod -s writepolicy=
logdrv -a mod -s writepolicy=writethru
logdrv -a mod -s writepolicy=writeback
logdrv -a mod -s writepolicy=bypass
logdrv -a mod -s writepolicy=auto
logdrv -a mod -s lookahead=
logdrv -a mod -s consolidation=
logdrv -a mod -s consolidation=enable
logdrv -a mod -s consolidation=disable
logdrv -a mod -s name=
logdrv -a locate
logdrv -a locate -l value
logdrv -a locate -i value
logdrv -a locate -d value
logdrv -a add
logdrv -a add -p value
logdrv -a add -i value
logdrv -a add -e value
logdrv -a add -z value
logdrv -a add -z name=
logdrv -a add -z raid=
logdrv -a add -z raid=RAID0
logdrv -a add -z raid=RAID10
logdrv -a add -z raid=RAID1
logdrv -a add -z raid=RAID50
logdrv -a add -z raid=RAID5
logdrv -a add -z raid=RAIDMF
logdrv -a add -z raid=JBOD
logdrv -a add -z capacity=
logdrv -a add -z sectorsize=
logdrv -a add -z stripe=
logdrv -a add -z rounding=
logdrv -a add -z rounding=NONE
logdrv -a add -z rounding=GBB
logdrv -a add -z init=
logdrv -a add -z init=NONE
logdrv -a add -z init=QUICK
logdrv -a add -z init=BACK
logdrv -a add -z subarraycnt=
logdrv -a add -z paritycnt=
logdrv -a add -z symmetric=
logdrv -a add -z shift=
logdrv -a del
logdrv -a del -l value
logdrv -a del -i value
migrate
migrate -l value
migrate -i value
migrate -a list
migrate -a list -l value
migrate -a list -i value
migrate -a start
migrate -a start -l value
migrate -a start -i value
migrate -a start -p value
migrate -a start -e value
migrate -a start -s value
migrate -a start -s raid=
migrate -a start -s raid=RAID0
migrate -a start -s raid=RAID10
migrate -a start -s raid=RAID1
migrate -a start -s raid=RAID50
migrate -a start -s raid=RAID5
migrate -a start -s raid=RAIDMF
migrate -a start -s raid=JBOD
migrate -a start -s stripe=
migrate -a start -s count=
migrate -a pause
migrate -a pause -l value
migrate -a pause -i value
migrate -a resume
migrate -a resume -l value
migrate -a resume -i value
mp
mp -a list
mp -a list -p value
mp -a list -i value
mp -a start
mp -a start -p value
mp -a start -i value
mp -a stop
mp -a stop -p value
mp -a stop -i value
mp -a pause
mp -a pause -p value
mp -a pause -i value
mp -a resume
mp -a resume -p value
mp -a resume -i value
phydrv
phydrv -v flag
phydrv -p value
phydrv -i value
phydrv -c value
phydrv -a list
phydrv -a list -v flag
phydrv -a list -p value
phydrv -a list -i value
phydrv -a list -c value
phydrv -a mod
phydrv -a mod -p value
phydrv -a mod -i value
phydrv -a mod -s value
phydrv -a mod -s writecache=
phydrv -a mod -s writecache=enable
phydrv -a mod -s writecache=disable
phydrv -a mod -s ncq=
phydrv -a mod -s ncq=enable
phydrv -a mod -s ncq=disable
phydrv -a mod -s tcq=
phydrv -a mod -s tcq=enable
phydrv -a mod -s tcq=disable
phydrv -a locate
phydrv -a locate -p value
phydrv -a locate -i value
phydrv -a locate -d value
phydrv -a wipe
phydrv -a wipe -p value
phydrv -a wipe -i value
phydrv -a set3G
phydrv -a set3G -p value
phydrv -a set3G -i value
phydrv -a set3G -e value
phydrv -a list3G
phydrv -a list3G -p value
phydrv -a list3G -i value
rb
rb -l value
rb -i value
rb -a list
rb -a list -l value
rb -a list -i value
rb -a start
rb -a start -l value
rb -a start -i value
rb -a start -p value
rb -a start -e value
rb -a abort
rb -a abort -l value
rb -a abort -i value
rb -a pause
rb -a pause -l value
rb -a pause -i value
rb -a resume
rb -a resume -l value
rb -a resume -i value
rb -a restart
rb -a restart -l value
rb -a restart -i value
rc
rc -l value
rc -i value
rc -a list
rc -a list -l value
rc -a list -i value
rc -a start
rc -a start -l value
rc -a start -i value
rc -a start -n flag
rc -a stop
rc -a stop -l value
rc -a stop -i value
rc -a pause
rc -a pause -l value
rc -a pause -i value
rc -a resume
rc -a resume -l value
rc -a resume -i value
sync
sync -l value
sync -i value
sync -a list
sync -a list -l value
sync -a list -i value
END
}

# Splits $1 as the shell would, as far as it has been typed: words has what stands before the word
# that is being typed, cur that word without its quote, open the quote when it is still open.
_cli_split() {
    local line=$1 char begun="" i
    words=() cur="" open=""
    for ((i = 0; i < ${#line}; ++i)); do
        char=${line:i:1}
        if [[ $open ]]; then
            if [[ $char == "$open" ]]; then open=""; else cur+=$char; fi
        elif [[ $char == [\"\'] ]]; then
            open=$char begun=1
        elif [[ $char == [[:blank:]] ]]; then
            [[ $begun ]] && words+=("$cur")
            cur="" begun=""
        else
            [[ $char == "\\" ]] && ((++i)) && char=${line:i:1}
            cur+=$char begun=1
        fi
    done
}

# Reads from the table what the command in words[1] takes, with its action if there is one: kinds of
# its options, and what their values may be.
_cli_read_command() {
    local command=${words[1],,} start=$1 line rest letter
    while read -r line; do
        [[ ${line,,} == "$command "* ]] || continue
        rest=${line#* }
        case $rest in
            "topic "*) topics+=("${rest#* }") && continue ;;
            "-a flag") [[ $start ]] && continue ;;
            "-a "*)
                [[ $rest == "-a "*" "* ]] || actions+=("${rest#* }")
                [[ $start && ${rest,,} == "$start "* ]] || continue
                rest=${rest:${#start}+1}
                ;;
            *) [[ $start ]] && continue ;;
        esac
        letter=${rest%% *} rest=${rest#* }
        case $rest in
            flag | value | file) kinds[$letter]=$rest order+=("$letter") ;;
            "value "*) values[$letter]+="${rest#* } " ;;
            *=*) settings[$letter]+="$rest " ;;
        esac
    done < <(_cli_table)
}

# What may follow: candidates, and style: words, file names or the items of a settings text.
_cli_find_candidates() {
    local first=2 i letter given=" " start=""
    style=words candidates=()
    if ((${#words[@]} <= 1)); then
        mapfile -t candidates < <(_cli_table | grep -v ' ')
        return
    fi
    if [[ ${words[2],,} == -a && ${words[3]} && ${words[3]} != -* ]]; then
        start="-a ${words[3],,}" first=4
    fi
    _cli_read_command "$start"
    if ((${#topics[@]})); then
        ((${#words[@]} == 2)) && candidates=("${topics[@]}")
        return
    fi
    if ((${#actions[@]} && ${#words[@]} == 3)) && [[ ${words[2],,} == -a ]]; then
        candidates=("${actions[@]}")
        return
    fi
    ((${#actions[@]})) || first=2
    for ((i = first; i < ${#words[@]}; ++i)); do
        letter=${words[i],,} given+="${words[i],,} "
        [[ ${kinds[$letter]} == value || ${kinds[$letter]} == file ]] || continue
        if ((++i == ${#words[@]})); then
            _cli_find_values "$letter"
            return
        fi
    done
    ((${#actions[@]} && ${#words[@]} == 2)) && candidates=(-a)
    for letter in "${order[@]}"; do
        [[ $given == *" $letter "* ]] || candidates+=("$letter")
    done
}

# The candidates for an option's value. In a settings text the item behind the last comma is meant,
# without the blanks before it: its key first, then its value.
_cli_find_values() {
    local word item=${cur##*,}
    item=${item#"${item%%[![:blank:]]*}"}
    if [[ ${kinds[$1]} == file ]]; then
        style=files
    elif [[ ${settings[$1]} ]]; then
        style=settings
        for word in ${settings[$1]}; do
            if [[ $item == *=* && $word != *= || $item != *=* && $word == *= ]]; then
                candidates+=("${cur%"$item"}$word")
            fi
        done
    else
        read -ra candidates <<<"${values[$1]}"
    fi
}

_cli() {
    local cur open style head candidate
    local -a words candidates topics=() actions=() order=()
    local -A kinds=() values=() settings=()
    _cli_split "${COMP_LINE:0:COMP_POINT}"
    _cli_find_candidates
    COMPREPLY=()
    if [[ $style == files ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$cur")
        return
    fi
    [[ $style == settings ]] && compopt -o nospace 2>/dev/null
    # The shell replaces what is behind the last "=" alone, unless a quote is open.
    head=""
    [[ ! $open && $COMP_WORDBREAKS == *=* && $cur == *=* ]] && head=${cur%=*}=
    for candidate in "${candidates[@]}"; do
        [[ ${candidate,,} == "${cur,,}"* ]] && COMPREPLY+=("${candidate:${#head}}")
    done
    # The only candidate would close the quote: the text may go on, and behind a key it must.
    if [[ $style == settings && $open && ${#COMPREPLY[@]} == 1 ]]; then
        candidate=${COMPREPLY[0]}
        if [[ $candidate == *= ]]; then COMPREPLY+=("$candidate<value>"); else COMPREPLY+=("$candidate,"); fi
    fi
}

complete -F _cli cli cli-shell cli-rehearse
