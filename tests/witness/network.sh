# shellcheck shell=bash disable=SC2034,SC2154  # a part of scripts/witness
# Two network namespaces joined by a virtual cable, so that nothing is sent anywhere else. The cameras are
# in one of them; what uses them, the client, is in the other one.

cameras=(MONO PACKED COLOUR BAYER)
here=10.77.0.1
ports=61000-65000  # that aravis may choose; tshark knows no other protocol of them
spare=10.77.0.20  # where FORCEIP takes a camera
control=$folder/control

say() { printf '%s\n' "$*"; }
fail() {
    say "FAILED: $*" >&2
    exit 1
}

# The address of camera n is 10.77.0.(10 + n).
address_of() {
    local n
    for n in "${!cameras[@]}"; do
        [[ ${cameras[n]} != "$1" ]] || say "10.77.0.$((11 + n))"
    done
}

client() { nsenter --net="/proc/$client/ns/net" -- timeout 60 "$@"; }

# choose_ports_from FIRST-LAST: the system, for the client.
choose_ports_from() {
    nsenter --net="/proc/$client/ns/net" -- sh -c "echo ${1/-/ } >/proc/sys/net/ipv4/ip_local_port_range"
}

# join NAME MTU: a virtual cable between the namespaces, whose ends say nothing of their own.
join() {
    ip link add "$1" mtu "$2" type veth peer name "$1" mtu "$2" netns "$client"
    ip link set "$1" addrgenmode none
    client ip link set "$1" addrgenmode none
}

# What is sent on "outside" should not have been.
join_namespaces() {
    local camera
    unshare --net -- sleep 1000 &
    client=$!
    until [[ $(readlink "/proc/$client/ns/net") != "$(readlink /proc/self/ns/net)" ]]; do sleep 0.05; done
    ip link set lo up
    join cable 9000
    join outside 1500
    for camera in "${cameras[@]}"; do ip address add "$(address_of "$camera")/24" brd + dev cable; done
    ip address add "$spare/24" brd + dev cable
    ip address add 192.0.2.1/24 brd + dev outside
    ip link set cable up
    ip link set outside up
    ip route add default dev outside
    choose_ports_from "$ports"
    client ip address add "$here/24" brd + dev cable
    client ip link set lo up
    client ip link set cable up
    client ip link set outside up
}

# sent_on INTERFACE: how many packets the cameras' side sent there.
sent_on() { awk -v name="$1:" '$1 == name { print $11 }' /proc/net/dev; }

# What cameras send leaves no other way than the cable to the client.
nothing_else_was_sent() {
    local sent
    sent=$(sent_on outside)
    ((sent == 0)) || fail "$sent packets were sent where no client is"
    (($(sent_on cable) > 10000)) || fail "the counters do not count"
}

# ---- The cameras --------------------------------------------------------------------------------

# start_zelsim CONFIGURATION
start_zelsim() {
    local on=() camera
    for camera in "${cameras[@]}"; do on+=(--on "$(address_of "$camera")"); done
    "$zelsim" --config "$1" "${on[@]}" --on "$spare" --control "$control" >"$folder/zelsim.log" 2>&1 &
    zelsim_pid=$!
    until [[ -S $control ]]; do
        kill -0 "$zelsim_pid" 2>/dev/null || fail "zelsim ended: $(cat -- "$folder/zelsim.log")"
        sleep 0.05
    done
}

stop_zelsim() {
    [[ -n ${zelsim_pid:-} ]] || return 0
    kill "$zelsim_pid"
    wait "$zelsim_pid" || fail "zelsim did not end cleanly: $(cat -- "$folder/zelsim.log")"
}

# tell COMMAND...: to the cameras.
tell() { "$zelsim" --control "$control" --tell "$*" || fail "zelsim did not take: $*"; }
