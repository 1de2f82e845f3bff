# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash
# Sourced by scripts that take minutes: runs steps, shows the progress and time of each, and counts
# passed, failed and skipped tests.

readonly skip_code=77 # Of a step that cannot run here; its last line says why.
step_lines=()
steps_done=0
passed=0
failed=0
skipped=0

clock() {
    printf '%d:%02d' $(($1 / 60)) $(($1 % 60))
}

# Rewrites one line on the terminal until the process ends. Ninja and CTest count what they do.
show_progress() {
    local name=$1 log=$2 process=$3 began=$4 counts part whole filled
    while kill -0 "$process" 2>/dev/null; do
        counts=$(grep --text --only-matching --extended-regexp '^(\[| *)[0-9]+/[0-9]+' "$log" |
            tail --lines=1 | tr --delete '[ ')
        part=${counts%/*} whole=${counts#*/}
        filled=$((20 * ${part:-0} / ${whole:-1}))
        printf '\r\033[K%5s  %s  [%s%s] %s' "$(clock $((SECONDS - began)))" "$name" \
            "$(printf '%*s' "$filled" '' | tr ' ' '#')" "$(printf '%*s' $((20 - filled)) '')" "$counts"
        sleep 0.2
    done
    printf '\r\033[K'
}

# Adds the counts in the step's last line; without such a line counts the step as one.
count_step() {
    local code=$1 last=$2
    if [[ $last =~ ^([0-9]+)\ passed,\ ([0-9]+)\ failed,\ ([0-9]+)\ skipped$ ]]; then
        passed=$((passed + BASH_REMATCH[1]))
        failed=$((failed + BASH_REMATCH[2]))
        skipped=$((skipped + BASH_REMATCH[3]))
        if [ "$code" -ne 0 ] && [ "${BASH_REMATCH[2]}" -eq 0 ]; then
            failed=$((failed + 1))
        fi
    elif [ "$code" -eq 0 ]; then
        passed=$((passed + 1))
    elif [ "$code" -eq "$skip_code" ]; then
        skipped=$((skipped + 1))
    else
        failed=$((failed + 1))
    fi
}

# Runs a command and returns its exit code. If it does not fail, shows only the lines about skipped tests.
step() {
    local name=$1 log
    shift
    log=$(mktemp)
    "$@" >"$log" 2>&1 </dev/null &
    finish_step "$name" "$log" "$!" "$SECONDS"
}

# Starts a step that uses the processors only while the steps after it leave them idle; where the kernel
# refuses that, it only has a lower priority. finish_beside waits for it. There can be one at a time.
start_beside() {
    local idle=(chrt --idle 0)
    if ! "${idle[@]}" true 2>/dev/null; then
        idle=(nice)
    fi
    beside_name="$1, beside the other steps"
    beside_log=$(mktemp)
    beside_began=$SECONDS
    shift
    "${idle[@]}" "$@" >"$beside_log" 2>&1 </dev/null &
    beside_process=$!
    trap 'kill "$beside_process" 2>/dev/null' EXIT
    echo "       $beside_name ..."
}

finish_beside() {
    local code=0
    finish_step "$beside_name" "$beside_log" "$beside_process" "$beside_began" || code=$?
    trap - EXIT
    return "$code"
}

# Shows a step that has been started until it ends, then its result, which it returns.
finish_step() {
    local name=$1 log=$2 process=$3 began=$4 code=0 last result="done"
    if [ -t 1 ]; then
        show_progress "$name" "$log" "$process" "$began"
    else
        echo "       $name ..."
    fi
    wait "$process" || code=$?
    last=$(tail --lines=1 "$log")
    count_step "$code" "$last"
    case $code in
        0)
            if [[ $last =~ ^[1-9][0-9]*\ passed, ]]; then
                result="$last"
            fi
            sed --quiet 's/^skipped: /       &/p' "$log"
            ;;
        "$skip_code") result="skipped: $last" ;;
        *)
            grep --text --invert-match --extended-regexp ' Passed +[0-9.]+ sec$' "$log"
            result=FAILED
            ;;
    esac
    rm --force "$log"
    steps_done=$((steps_done + 1))
    step_lines+=("$(printf '%5s  %s: %s' "$(clock $((SECONDS - began)))" "$name" "$result")")
    echo "${step_lines[-1]}"
    return "$code"
}

say_and_skip() {
    echo "$1"
    return "$skip_code"
}

# Reports that a step cannot run here, and why.
skip() {
    step "$1" say_and_skip "$2" || true
}

# For steps that only pass or fail, such as builds.
nothing_to_count() {
    "$@" && echo "0 passed, 0 failed, 0 skipped"
}

print_times() {
    printf '\nTook %s in %d steps:\n' "$(clock "$SECONDS")" "$steps_done"
    printf '%s\n' "${step_lines[@]}"
}

# The closing line; fails if anything did.
print_totals() {
    local line="$passed passed, $failed failed"
    if [ "$skipped" -ne 0 ]; then
        line+=", $skipped skipped"
    fi
    echo "$line"
    [ "$failed" -eq 0 ]
}
