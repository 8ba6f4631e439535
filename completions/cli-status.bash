# Completion for cli-status in bash.
_cli_status() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    [ "$current" != = ] || current=
    [ "$previous" != = ] || previous=${COMP_WORDS[COMP_CWORD - 2]}
    case $previous in
    -i | --controller) COMPREPLY=() ;;
    --baseline | --changes | --limits | --page) mapfile -t COMPREPLY < <(compgen -f -- "$current") ;;
    --metrics)
        if [ "${COMP_WORDS[COMP_CWORD - 1]}" = = ] || [ "${COMP_WORDS[COMP_CWORD]}" = = ]; then
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
        else
            _cli_status_options
        fi
        ;;
    *) _cli_status_options ;;
    esac
}

_cli_status_options() {
    mapfile -t COMPREPLY < <(compgen -W "-i -v -q -h -V --controller --verbose --quiet --baseline --changes
        --syslog --limits --json --plugin --metrics --page --help --version" -- "$current")
}

complete -o filenames -F _cli_status cli-status
