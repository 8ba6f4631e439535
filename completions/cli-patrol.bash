# Completion for cli-patrol in bash.
_cli_patrol() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    [ "$current" != = ] || current=
    [ "$previous" != = ] || previous=${COMP_WORDS[COMP_CWORD - 2]}
    case $previous in
    -i | --controller | -n | --at-once | --every | --limit) COMPREPLY=() ;;
    *)
        mapfile -t COMPREPLY < <(compgen -W "-i -n -w -q -h -V --controller --at-once --every --limit --wait
            --quiet --rehearse --help --version" -- "$current")
        ;;
    esac
}

complete -F _cli_patrol cli-patrol
