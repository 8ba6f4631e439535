# Completion for cli-backup in bash.
_cli_backup() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    [ "$current" != = ] || current=
    [ "$previous" != = ] || previous=${COMP_WORDS[COMP_CWORD - 2]}
    case $previous in
    -d | --directory) mapfile -t COMPREPLY < <(compgen -d -- "$current") ;;
    --cli) mapfile -t COMPREPLY < <(compgen -f -- "$current") ;;
    --keep) COMPREPLY=() ;;
    *) mapfile -t COMPREPLY < <(compgen -W "-d -h -V --directory --keep --cli --help --version" -- "$current") ;;
    esac
}

complete -o filenames -F _cli_backup cli-backup
