# shellcheck shell=bash
# Sourced by ./dev and by scripts that run quiet commands.

# patiently LOG COMMAND...: runs a command with its output in LOG, and says every few seconds what it is
# at, so that nobody takes silence for the end.
patiently() {
    local log=$1 start=$SECONDS result=0 teller last
    shift
    : >"$log"
    while sleep 5 >/dev/null 2>&1 && kill -0 $$; do
        last=$(tail -n 1 -- "$log")
        printf '   %3d s%.100s\n' $((SECONDS - start)) "${last:+: $last}"
    done 2>/dev/null &
    teller=$!
    "$@" >>"$log" 2>&1 || result=$?
    kill "$teller"
    wait "$teller" 2>/dev/null || true
    return "$result"
}
