#!/usr/bin/env bash
# Drives the bash completion of tessaline-vault the way bash does (COMP_WORDS, COMP_CWORD) and
# checks its answers against the built tessaline-vault and a private vault; then checks that
# every command the help lists is known to the bash, zsh and fish completions and to the
# manual page.
# Usage: completion_test.sh SOURCE_DIR BUILD_DIR
set -uo pipefail
source_dir=$1
build_dir=$2
vault_cli="$build_dir/bin/tessaline-vault"
failures=0

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export HOME="$work/home" XDG_DATA_HOME="$work/home/.local/share" LC_ALL=C.UTF-8
unset XDG_CONFIG_HOME
mkdir -p "$HOME"

# shellcheck source=../../resources/completions/tessaline-vault.bash
source "$source_dir/resources/completions/tessaline-vault.bash"

# complete WORDS... : completes the last word (which may be empty) and prints the answers sorted.
complete_line() {
    COMP_WORDS=("$vault_cli" "$@")
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    COMPREPLY=()
    _tessaline_vault
    printf '%s\n' "${COMPREPLY[@]}" | sed '/^$/d' | sort
}

expect() {
    local description=$1 expected=$2
    shift 2
    local actual
    actual=$(complete_line "$@")
    if [[ "$actual" == "$(printf '%s\n' $expected | sort)" ]]; then
        echo "ok: $description"
    else
        echo "FAIL: $description" >&2
        echo "  expected: $(echo $expected)" >&2
        echo "  actual:   $(echo $actual)" >&2
        failures=$((failures + 1))
    fi
}

# A vault of our own, with a pack that exists nowhere else, shows that the ids come from the
# user's vault.
"$vault_cli" export "$work/vault.json" >/dev/null
sed 's/"org\.kde\.kate"/"org.example.OnlyHere"/' "$work/vault.json" >"$work/edited.json"
"$vault_cli" import "$work/edited.json" >/dev/null
ids=$("$vault_cli" --json rows | sed -n 's/.*"bundleID": *"\([^"]*\)".*/\1/p' | sort -u)
grep -qx org.example.OnlyHere <<<"$ids" || { echo "FAIL: the edited vault was not imported" >&2; exit 1; }

all_commands="path sections rows favorite import export reset prune scan apps run which conflicts"
expect "first word: commands and global options" "$all_commands --json --help" ""
expect "a command's prefix" "sections scan" s
expect "options of prune" "--bundle-id --json --help" prune --
expect "bundle ids for prune" "org.example.OnlyHere" prune --bundle-id org.example
expect "an option's prefix before the command" "--json" --j
expect "options of sections" "--app --bundle-id --json --help" sections --
expect "options of scan" "--bundle-id --all --help" scan --
expect "bundle ids of the user's vault" "$ids" sections --bundle-id ""
expect "bundle ids by prefix" "org.example.OnlyHere" sections --bundle-id org.ex
expect "bundle ids after --json and the command" "$(grep '^org\.' <<<"$ids")" \
    --json favorite --bundle-id org.
expect "bundle ids for scan" "org.example.OnlyHere" scan --bundle-id org.example
expect "options of run" "--bundle-id --help" run --
expect "bundle ids for run" "org.example.OnlyHere" run --bundle-id org.example
expect "the command after an option value" "--app --bundle-id --json --help" \
    sections --app Firefox --
expect "nothing to offer for an app name" "" sections --app ""
mkdir -p "$work/files" && touch "$work/files/mine.json" "$work/files/other.txt"
expect "files for import" "$work/files/mine.json" import "$work/files/mi"
expect "files for export" "$work/files/mine.json $work/files/other.txt" export "$work/files/"
expect "no argument completion for reset" "" reset ""
expect "options of which" "--bundle-id --json --help" which --
expect "bundle ids for conflicts" "org.example.OnlyHere" conflicts --bundle-id org.example

# Every command of the help is known to each completion and to the manual page.
help_commands=$("$vault_cli" --help | sed -n '/^Commands:/,/^Options:/p' |
    sed -n 's/^  \([a-z][a-z-]*\).*/\1/p' | sort)
if [[ "$help_commands" != "$(printf '%s\n' $all_commands | sort)" ]]; then
    echo "FAIL: the help lists other commands than the completions: $(echo $help_commands)" >&2
    failures=$((failures + 1))
fi
for command in $help_commands; do
    grep -q "'$command:" "$source_dir/resources/completions/_tessaline-vault" ||
        { echo "FAIL: zsh completion lacks $command" >&2; failures=$((failures + 1)); }
    grep -q -- "-a $command " "$source_dir/resources/completions/tessaline-vault.fish" ||
        { echo "FAIL: fish completion lacks $command" >&2; failures=$((failures + 1)); }
    grep -q "^\*$command\*" "$source_dir/resources/man/tessaline-vault.1.scd" ||
        { echo "FAIL: the manual page lacks $command" >&2; failures=$((failures + 1)); }
done
for option in $("$vault_cli" --help | sed -n 's/^  \(--[a-z-]*\).*/\1/p'); do
    grep -q -- "\*$option\*" "$source_dir/resources/man/tessaline-vault.1.scd" ||
        { echo "FAIL: the manual page lacks $option" >&2; failures=$((failures + 1)); }
done

if ((failures > 0)); then
    echo "$failures check(s) failed" >&2
    exit 1
fi
echo "all completion checks passed"
