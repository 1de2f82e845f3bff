# SPDX-License-Identifier: Apache-2.0
# fish completion for ogmprobe

set --local commands info packets seektest extract timeline explain sync compare

complete --command ogmprobe --long-option plugin --require-parameter --force-files --description "The plug-in"
complete --command ogmprobe --long-option log --exclusive --arguments "verbose debug info warn error silent" --description "Least level of log lines to show"
complete --command ogmprobe --long-option color --exclusive --arguments "auto always never" --description "When to use colour"
complete --command ogmprobe --long-option timeout --exclusive --description "Longest standstill of the plug-in"
complete --command ogmprobe --long-option quiet --description "Show neither warnings nor progress"
complete --command ogmprobe --long-option in-process --description "Run the plug-in in this process"
complete --command ogmprobe --long-option help --description "Print help"
complete --command ogmprobe --long-option version --condition "not __fish_seen_subcommand_from $commands" --description "Print the version"

complete --command ogmprobe --condition "not __fish_seen_subcommand_from $commands" --arguments info --description "Show files and their tracks"
complete --command ogmprobe --condition "not __fish_seen_subcommand_from $commands" --arguments packets --description "List the buffers of all tracks"
complete --command ogmprobe --condition "not __fish_seen_subcommand_from $commands" --arguments seektest --description "Show where seeks land"
complete --command ogmprobe --condition "not __fish_seen_subcommand_from $commands" --arguments extract --description "Write each track into a file"
complete --command ogmprobe --condition "not __fish_seen_subcommand_from $commands" --arguments timeline --description "Draw packets over time"
complete --command ogmprobe --condition "not __fish_seen_subcommand_from $commands" --arguments explain --description "Say why something is missing or odd"
complete --command ogmprobe --condition "not __fish_seen_subcommand_from $commands" --arguments sync --description "Set times against those of the pages"
complete --command ogmprobe --condition "not __fish_seen_subcommand_from $commands" --arguments compare --description "Tell what differs first"

complete --command ogmprobe --condition "__fish_seen_subcommand_from info" --long-option format --description "List all entries of all formats"
complete --command ogmprobe --condition "__fish_seen_subcommand_from info" --long-option verbose --description "Cut no bytes"
complete --command ogmprobe --condition "__fish_seen_subcommand_from info" --long-option json --description "Print JSON"

complete --command ogmprobe --condition "__fish_seen_subcommand_from packets" --long-option track --exclusive --description "Only this track"
complete --command ogmprobe --condition "__fish_seen_subcommand_from packets" --long-option seek --exclusive --description "Seek there first"
complete --command ogmprobe --condition "__fish_seen_subcommand_from packets" --long-option count --exclusive --description "Buffers of each track"
complete --command ogmprobe --condition "__fish_seen_subcommand_from packets" --long-option only-track --exclusive --description "Play this track alone"
complete --command ogmprobe --condition "__fish_seen_subcommand_from packets" --long-option from --exclusive --description "From this time on"
complete --command ogmprobe --condition "__fish_seen_subcommand_from packets" --long-option to --exclusive --description "In front of this time"
complete --command ogmprobe --condition "__fish_seen_subcommand_from packets" --long-option sync-only --description "Only sync frames"
complete --command ogmprobe --condition "__fish_seen_subcommand_from packets" --long-option clock --description "Times as h:mm:ss"
complete --command ogmprobe --condition "__fish_seen_subcommand_from packets" --long-option csv --description "Comma-separated values"
complete --command ogmprobe --condition "__fish_seen_subcommand_from packets" --long-option json --description "Print JSON lines"

complete --command ogmprobe --condition "__fish_seen_subcommand_from seektest" --long-option steps --exclusive --description "Spaces between targets"
complete --command ogmprobe --condition "__fish_seen_subcommand_from seektest" --long-option strict --description "Exit code 1 if a seek misses"
complete --command ogmprobe --condition "__fish_seen_subcommand_from seektest" --long-option csv --description "Comma-separated values"
complete --command ogmprobe --condition "__fish_seen_subcommand_from seektest" --long-option json --description "Print JSON"

complete --command ogmprobe --condition "__fish_seen_subcommand_from extract" --short-option o --long-option output --require-parameter --description "Folder for the files"
complete --command ogmprobe --condition "__fish_seen_subcommand_from extract" --long-option track --exclusive --description "Only this track"
complete --command ogmprobe --condition "__fish_seen_subcommand_from extract" --long-option only-track --exclusive --description "Play this track alone"
complete --command ogmprobe --condition "__fish_seen_subcommand_from extract" --long-option force --description "Overwrite files that exist"

complete --command ogmprobe --condition "__fish_seen_subcommand_from timeline" --short-option o --long-option output --require-parameter --force-files --description "The new page, drawing or folder"
complete --command ogmprobe --condition "__fish_seen_subcommand_from timeline" --long-option svg --description "Drawings in a folder"
complete --command ogmprobe --condition "__fish_seen_subcommand_from timeline" --long-option seek-steps --exclusive --description "Spaces between targets of seeks"
complete --command ogmprobe --condition "__fish_seen_subcommand_from timeline" --long-option force --description "Overwrite a file that exists"

complete --command ogmprobe --condition "__fish_seen_subcommand_from explain" --long-option pages --description "List the pages too"
complete --command ogmprobe --condition "__fish_seen_subcommand_from explain" --long-option verbose --description "Tell also what is usual"
complete --command ogmprobe --condition "__fish_seen_subcommand_from explain" --long-option strict --description "Exit code 1 if something is found"
complete --command ogmprobe --condition "__fish_seen_subcommand_from explain" --long-option csv --description "Comma-separated values"
complete --command ogmprobe --condition "__fish_seen_subcommand_from explain" --long-option json --description "Print JSON"

complete --command ogmprobe --condition "__fish_seen_subcommand_from sync" --long-option packets --description "List each packet too"
complete --command ogmprobe --condition "__fish_seen_subcommand_from sync" --long-option csv --description "Comma-separated values"
complete --command ogmprobe --condition "__fish_seen_subcommand_from sync" --long-option json --description "Print JSON"

complete --command ogmprobe --condition "__fish_seen_subcommand_from compare" --long-option plugin-b --require-parameter --force-files --description "The plug-in for B"
complete --command ogmprobe --condition "__fish_seen_subcommand_from compare" --long-option device --require-parameter --force-files --description "What a device printed"
complete --command ogmprobe --condition "__fish_seen_subcommand_from compare" --long-option reads --description "Compare reads too"
complete --command ogmprobe --condition "__fish_seen_subcommand_from compare" --long-option seeks --exclusive --description "Compare seeks too"
complete --command ogmprobe --condition "__fish_seen_subcommand_from compare" --long-option logs --description "Compare log lines too"
complete --command ogmprobe --condition "__fish_seen_subcommand_from compare" --long-option no-logs --description "Leave log lines out"
complete --command ogmprobe --condition "__fish_seen_subcommand_from compare" --long-option json --description "Print JSON"
