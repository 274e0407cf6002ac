# shellcheck shell=bash disable=SC2034,SC2154  # a part of scripts/witness
# Literal datagrams of the client; what a camera answers is compared with literal bytes. Ports are those of
# the client. Ids, addresses and values are hex, with all their digits.

# ask PORT CAMERA HEX [BYTES]: sends a datagram, and prints what comes within 0.3 s, or until so many bytes
# have come.
ask() {
    xxd -r -p <<<"$3" |
        client socat -t 0.3 - "UDP4:$(address_of "$2"):3956,bind=:$1${4:+,readbytes=$4}" | xxd -p -c 0
}

# answered PORT CAMERA HEX ANSWER
answered() {
    local answer
    answer=$(ask "$1" "$2" "$3" $((${#4} / 2)))
    [[ $answer == "$4" ]] || fail "$2 answered $answer, not $4, to $3"
}

# bytes HEX...: how many, in 4 digits.
bytes() {
    local hex
    hex=$(printf %s "$@")
    printf %04x $((${#hex} / 2))
}

# written STATUS INDEX PORT CAMERA ID ADDRESS VALUE...: WRITEREG, and what its acknowledge says.
written() {
    answered "$3" "$4" "42010082$(bytes "${@:6}")$5$(printf %s "${@:6}")" "${1}00830004${5}0000$2"
}
write() { written 0000 "$(printf %04x $((($# - 3) / 2)))" "$@"; }

# value PORT CAMERA ID ADDRESS...: READREG, and the values that come.
value() {
    local size answer
    size=$(bytes "${@:4}")
    answer=$(ask "$1" "$2" "42010080$size$3$(printf %s "${@:4}")" $((8 + 0x$size)))
    [[ $answer == "00000081$size$3"* ]] || fail "$2 answered $answer to READREG of ${*:4}"
    say "${answer:16}"
}

# resend PORT CAMERA ID BLOCK FIRST LAST [CHANNEL], resend64: PACKETRESEND.
resend() { ask "$1" "$2" "42000040000c${3}${7:-0000}$4$5$6" >/dev/null; }
resend64() { ask "$1" "$2" "421000400014${3}00000000$5$6$4" >/dev/null; }

# register CAMERA NAME: its address, as the description says.
register() {
    local address
    address=$(sed -n "/IntReg Name=\"$2Reg\"/,/<\/IntReg>/s/.*<Address>0x\(.*\)<.*/\1/p" "$folder/$1.xml")
    printf '%08x\n' "0x$address"
}

# ---- What cameras send by themselves ------------------------------------------------------------

# soon CONDITION...: waits until it is true.
soon() {
    local i
    for ((i = 0; i < 500; ++i)); do
        ! "$@" || return 0
        sleep 0.02
    done
    fail "this did not come true: $*"
}

is_bound() { grep -qi ":$(printf %04x "$1") 00000000:0000" "/proc/$client/net/udp"; }
has_come() { (($(wc -c <"$folder/port-$1") >= $2)); }
blocks_of() { tell stats "$1" | sed -n 's/^blocks=//p'; }
has_sent() { (($(blocks_of "$1") >= $2)); }

declare -A listeners

# listen PORT...: what comes to these ports is written to files, until the client is deaf.
listen() {
    local port
    for port in "$@"; do
        nsenter --net="/proc/$client/ns/net" -- socat -u "UDP4-RECV:$port" - >"$folder/port-$port" &
        listeners[$port]=$!
        soon is_bound "$port"
    done
}

deaf() {
    kill "${listeners[$1]}"
    wait "${listeners[$1]}" || true
}

# acknowledged PORT CODE ID COMMAND...: while the command runs, the client acknowledges one event.
acknowledged() {
    local answerer
    xxd -r -p <<<"0000${2}0000$3" | client socat -t 1 - "UDP4-RECVFROM:$1" >"$folder/event" &
    answerer=$!
    soon is_bound "$1"
    "${@:4}"
    wait "$answerer" || fail "there was no event to acknowledge"
}

# acquire CAMERA ID BLOCKS: starts an acquisition, and waits until so many blocks are sent.
acquire() {
    local sent
    sent=$(blocks_of "$1")
    write 20001 "$1" "$2" "$(register "$1" AcquisitionStart)" 00000001
    soon has_sent "$1" $((sent + $3))
}
