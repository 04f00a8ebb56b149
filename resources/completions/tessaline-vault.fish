# Fish completion for tessaline-vault: commands, options, files for import and export, and for
# --bundle-id the bundle ids of the packs in the user's vault.

function __tessaline_vault_bundle_ids
    set -l program (commandline -opc)[1]
    $program --json rows 2>/dev/null | string match -rg '"bundleID": *"([^"]*)"' | sort -u
end

set -l commands path sections rows favorite import export reset prune scan apps run which conflicts
complete -c tessaline-vault -f
complete -c tessaline-vault -n "not __fish_seen_subcommand_from $commands" -a path -d 'Print the location of the vault file'
complete -c tessaline-vault -n "not __fish_seen_subcommand_from $commands" -a sections -d 'Print the cheat sheet of an application'
complete -c tessaline-vault -n "not __fish_seen_subcommand_from $commands" -a rows -d 'Print every shortcut grouped by application'
complete -c tessaline-vault -n "not __fish_seen_subcommand_from $commands" -a favorite -d 'Mark or unmark a shortcut as a favorite'
complete -c tessaline-vault -n "not __fish_seen_subcommand_from $commands" -a import -d 'Replace the vault with a vault file'
complete -c tessaline-vault -n "not __fish_seen_subcommand_from $commands" -a export -d 'Write the vault to a file'
complete -c tessaline-vault -n "not __fish_seen_subcommand_from $commands" -a reset -d 'Replace the vault with the bundled seed'
complete -c tessaline-vault -n "not __fish_seen_subcommand_from $commands" -a prune -d 'Remove the shortcuts the last menu scan no longer found'
complete -c tessaline-vault -n "not __fish_seen_subcommand_from $commands" -a scan -d 'Read the menus of a running application'
complete -c tessaline-vault -n "not __fish_seen_subcommand_from $commands" -a apps -d 'List the running applications a scan can read'
complete -c tessaline-vault -n "not __fish_seen_subcommand_from $commands" -a run -d 'Run a shortcut in a running application'
complete -c tessaline-vault -n "not __fish_seen_subcommand_from $commands" -a which -d 'Print every shortcut bound to a chord'
complete -c tessaline-vault -n "not __fish_seen_subcommand_from $commands" -a conflicts -d 'Print the chords bound twice or taken by the desktop'
# --json applies to the commands that print data.
complete -c tessaline-vault -n "not __fish_seen_subcommand_from path import export reset scan run" -l json -d 'Print data as JSON'
complete -c tessaline-vault -s h -l help -d 'Show the help'
complete -c tessaline-vault -n "__fish_seen_subcommand_from sections favorite scan run which conflicts prune" -l bundle-id -x -a '(__tessaline_vault_bundle_ids)' -d 'Bundle id of the pack'
complete -c tessaline-vault -n "__fish_seen_subcommand_from sections favorite" -l app -x -d 'Application name'
complete -c tessaline-vault -n "__fish_seen_subcommand_from scan" -l all -d 'Every open application'
complete -c tessaline-vault -n "__fish_seen_subcommand_from import export" -F
