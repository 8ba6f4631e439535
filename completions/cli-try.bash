# Completion for cli-try in bash: its options, or a command of cli.
_cli_try() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} directory
    [ "$current" != = ] || current=
    [ "$previous" != = ] || previous=${COMP_WORDS[COMP_CWORD - 2]}
    case $previous in
    -f | --file)
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
        return
        ;;
    esac
    if [[ $COMP_CWORD -eq 1 && $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "-f -s -h -V --file --shell --help --version" -- "$current")
        return
    fi
    [[ ${COMP_WORDS[1]} != -* ]] || return
    directory=$(dirname -- "${BASH_SOURCE[0]}")
    # Installed, the files are named after their programs.
    if ! declare -F _cli >/dev/null; then
        # shellcheck disable=SC1091
        source "$directory/cli" 2>/dev/null || source "$directory/cli.bash" 2>/dev/null || return
    fi
    _cli
}

complete -F _cli_try cli-try
