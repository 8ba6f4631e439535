# Completion for cli-wait in bash.
_cli_wait() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    [ "$current" != = ] || current=
    [ "$previous" != = ] || previous=${COMP_WORDS[COMP_CWORD - 2]}
    case $previous in
    -i | --controller | -l | --logical-drive | --timeout | --limit | --every) COMPREPLY=() ;;
    --for) mapfile -t COMPREPLY < <(compgen -W "init sync rc migrate rb mp any" -- "$current") ;;
    *)
        mapfile -t COMPREPLY < <(compgen -W "-i -l -q -h -V --controller --logical-drive --for --timeout --limit
            --every --quiet --paused-too --help --version" -- "$current")
        ;;
    esac
}

complete -F _cli_wait cli-wait
