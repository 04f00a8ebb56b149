# Bash completion for tessaline-vault: commands, options, files for import and export, and for
# --bundle-id the bundle ids of the packs in the user's vault.

# Prints the bundle ids of the vault's packs, one per line; $1 is the program to ask.
_tessaline_vault_bundle_ids()
{
    "$1" --json rows 2>/dev/null | sed -n 's/.*"bundleID": *"\([^"]*\)".*/\1/p' | sort -u
}

_tessaline_vault()
{
    local cur=${COMP_WORDS[COMP_CWORD]}
    local prev=${COMP_WORDS[COMP_CWORD - 1]}
    local commands="path sections rows favorite import export reset prune scan apps run which conflicts"

    case $prev in
        --bundle-id)
            local IFS=$'\n'
            COMPREPLY=($(compgen -W "$(_tessaline_vault_bundle_ids "${COMP_WORDS[0]}")" -- "$cur"))
            return
            ;;
        --app)
            COMPREPLY=()
            return
            ;;
    esac

    # The command is the first word that is neither an option nor an option's value.
    local command="" i
    for ((i = 1; i < COMP_CWORD; i++)); do
        case ${COMP_WORDS[i]} in
            --app | --bundle-id) ((i++)) ;;
            -*) ;;
            *)
                command=${COMP_WORDS[i]}
                break
                ;;
        esac
    done

    if [[ -z $command ]]; then
        COMPREPLY=($(compgen -W "$commands --json --help" -- "$cur"))
        return
    fi

    local options=""
    case $command in
        sections | favorite) options="--app --bundle-id --json" ;;
        scan) options="--bundle-id --all" ;;
        rows) options="--json" ;;
        apps) options="--json" ;;
        run) options="--bundle-id" ;;
        which | conflicts | prune) options="--bundle-id --json" ;;
    esac
    if [[ $cur == -* ]]; then
        COMPREPLY=($(compgen -W "$options --help" -- "$cur"))
        return
    fi
    case $command in
        import | export)
            compopt -o filenames 2>/dev/null
            COMPREPLY=($(compgen -f -- "$cur"))
            ;;
        *) COMPREPLY=() ;;
    esac
}

complete -F _tessaline_vault tessaline-vault
