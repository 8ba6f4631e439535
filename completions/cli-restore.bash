# Completion for cli-restore in bash.
_cli_restore() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    [ "$current" != = ] || current=
    [ "$previous" != = ] || previous=${COMP_WORDS[COMP_CWORD - 2]}
    case $previous in
    -i | --controller | --from | --drives) COMPREPLY=() ;;
    --log) mapfile -t COMPREPLY < <(compgen -f -- "$current") ;;
    *)
        case $current in
        -*)
            mapfile -t COMPREPLY < <(compgen -W "-i -h -V --controller --from --drives --apply --log --help --version" \
                -- "$current")
            ;;
        *) mapfile -t COMPREPLY < <(compgen -f -X '!*.cfg' -- "$current" && compgen -d -- "$current") ;;
        esac
        ;;
    esac
}

complete -o filenames -F _cli_restore cli-restore cli-restore-rehearse
