# Completion for cli-capture in bash.
_cli_capture() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    [ "$current" != = ] || current=
    [ "$previous" != = ] || previous=${COMP_WORDS[COMP_CWORD - 2]}
    case $previous in
    -o | --output) mapfile -t COMPREPLY < <(compgen -f -- "$current") ;;
    *) mapfile -t COMPREPLY < <(compgen -W "-o -a -h -V --output --anonymous --help --version" -- "$current") ;;
    esac
}

complete -o filenames -F _cli_capture cli-capture
