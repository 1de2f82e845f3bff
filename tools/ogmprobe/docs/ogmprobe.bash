# SPDX-License-Identifier: Apache-2.0
# bash completion for ogmprobe

_ogmprobe() {
    local -A options=(
        [info]="--format --verbose --json"
        [packets]="--track --only-track --seek --count --from --to --sync-only --clock --csv --json"
        [seektest]="--steps --strict --csv --json"
        [extract]="--output --track --only-track --force"
        [timeline]="--output --svg --seek-steps --from --to --date --force"
        [explain]="--pages --verbose --strict --csv --json"
        [sync]="--packets --csv --json"
        [compare]="--plugin-b --device --reads --seeks --logs --no-logs --json"
        [check]="--codecs --jobs --state --html --timelines --force --csv --json"
    )
    local every="--plugin --log --color --timeout --quiet --in-process --help"
    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command= i
    COMPREPLY=()

    case $previous in
        --log)
            mapfile -t COMPREPLY < <(compgen -W "verbose debug info warn error silent" -- "$word")
            return
            ;;
        --color)
            mapfile -t COMPREPLY < <(compgen -W "auto always never" -- "$word")
            return
            ;;
        --track | --only-track | --seek | --count | --from | --to | --seeks | --steps | --seek-steps | --jobs | --timeout)
            return
            ;;
    esac

    for ((i = 1; i < COMP_CWORD; i++)); do
        if [[ -v options[${COMP_WORDS[i]}] ]]; then
            command=${COMP_WORDS[i]}
            break
        fi
    done

    if [[ $word == -* ]]; then
        local offered="$every --version"
        if [[ -n $command ]]; then
            offered="$every ${options[$command]}"
        fi
        mapfile -t COMPREPLY < <(compgen -W "$offered" -- "$word")
    elif [[ -z $command ]]; then
        # A file without a command is shown as by info.
        mapfile -t COMPREPLY < <(compgen -W "${!options[*]}" -- "$word"
            [[ -z $word ]] || compgen -f -- "$word")
    else
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    fi
}

complete -F _ogmprobe ogmprobe
