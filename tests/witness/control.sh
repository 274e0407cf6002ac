# shellcheck shell=bash disable=SC2034,SC2154  # a part of scripts/witness
# Who may control a camera, and who may not.

control_is_kept_and_lost() {
    # Control that others may take over with the key 0x1234, and a heartbeat of half a second.
    write 20001 MONO 0001 00000a00 00000006
    write 20001 MONO 0002 0000095c 00001234
    written 8006 0000 20002 MONO 0003 00000a00 00000002
    written 8006 0000 20002 MONO 0004 00000a00 12350002
    write 20002 MONO 0005 00000a00 12340002
    written 8006 0000 20001 MONO 0006 00000938 000001f4
    write 20002 MONO 0007 00000938 000001f4
    [[ $(value 20003 MONO 0008 00000a00) == 00000002 ]] || fail "control was lost"
    sleep 1  # which is longer than the heartbeat
    [[ $(value 20003 MONO 0009 00000a00) == 00000000 ]] || fail "control was kept without a heartbeat"
    write 20002 MONO 0010 00000a00 00000002 00000938 00000bb8
    write 20002 MONO 0011 00000a00 00000000
}

# One client controls, a second one is refused, and any number watches by multicast.
others_are_refused_and_may_watch() {
    local answer first bytes
    client arv-camera-test-0.8 --name "$(address_of MONO)" --duration 3 >"$folder/first.log" 2>&1 &
    first=$!
    until tell list | grep -q 'MONO.*controlled'; do sleep 0.05; done
    answer=$(arv_tool MONO control Width=100 2>&1) || true
    grep -q 'access-denied' <<<"$answer" || fail "a second client could write: $answer"
    wait "$first" || fail "the first client was disturbed: see $folder/first.log"
    (($(figure "$folder/first.log" n_failures) == 0)) || fail "the first client was disturbed"

    client timeout 2 socat -u UDP4-RECV:21000,ip-add-membership=239.77.0.1:cable - >"$folder/multicast" &
    watcher=$!
    write 20001 MONO 0001 00000a00 00000002
    write 20001 MONO 0002 00000d18 ef4d0001 00000d00 00005208
    write 20001 MONO 0003 "$(register MONO AcquisitionStart)" 00000001
    wait "$watcher" || true
    write 20001 MONO 0004 00000a00 00000000
    bytes=$(wc -c <"$folder/multicast")
    say "MONO: $bytes bytes came by multicast"
    ((bytes > 640 * 480)) || fail "nothing came by multicast"
}
