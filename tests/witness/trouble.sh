# shellcheck shell=bash disable=SC2034,SC2154  # a part of scripts/witness-zelcam
# zelcam grabs frames while others interfere, cables are pulled and programs are stopped or killed: it goes on,
# or ends at once with the reason, and a fresh start works.

# The heartbeat of zelcam's cameras is 3 s.

declare -A grabs

# begin NAME OPTIONS...: grabs until it is ended, and goes on as soon as frames come.
begin() {
    local name=$1 seen
    seen=$(blocks_of MONO)
    nsenter --net="/proc/$client/ns/net" -- "$zelcam" grab -n 0 -f none --log "$folder/$name.csv" -t 6000 "${@:2}" "${patient[@]}" \
        >"$folder/$name.log" 2>&1 &
    grabs[$name]=$!
    soon has_sent MONO $((seen + 20))
}

# goes_on NAME: frames still come.
goes_on() {
    kill -0 "${grabs[$1]}" 2>/dev/null || fail "$1 ended: $(cat -- "$folder/$1.log")"
    soon has_sent MONO $(($(blocks_of MONO) + 20))
    kill -0 "${grabs[$1]}" 2>/dev/null || fail "$1 ended: $(cat -- "$folder/$1.log")"
}

is_over() { ! kill -0 "${grabs[$1]}" 2>/dev/null; }

# ends NAME PATTERN: by itself, with a reason like that.
ends() {
    local result=0
    soon is_over "$1"
    wait "${grabs[$1]}" || result=$?
    ((result > 1 && result < 128)) || fail "$1 ended with $result: $(cat -- "$folder/$1.log")"
    grep -qE -- "$2" "$folder/$1.log" || fail "$1 does not say \"$2\": $(cat -- "$folder/$1.log")"
    say "$1: $(grep -E -- "$2" "$folder/$1.log" | head -n 1)"
}

# stop NAME [ANY]: ends it as Ctrl-C does; no frame lacks anything, unless ANY is given.
stop() {
    local log=$folder/$1.log
    kill -INT "${grabs[$1]}"
    soon is_over "$1"
    wait "${grabs[$1]}" || true
    grep -qE '^Frames +[1-9]' "$log" || fail "$1 has no frames: $(cat -- "$log")"
    [[ -n ${2:-} ]] || grep -qxE 'Incomplete +0' "$log" || fail "$1 has incomplete frames: $(cat -- "$log")"
    is_free || fail "$1 left the camera under control"
}

is_free() { ! tell list | grep -q controlled; }
is_controlled() { tell list | grep -q controlled; }

# A user can begin again, at once.
can_begin_again() {
    client "$zelcam" grab -n 10 -f none "${patient[@]}" >"$folder/$1-again.log" 2>&1 ||
        fail "after $1, zelcam does not work: $(cat -- "$folder/$1-again.log")"
    grep -qxE 'Incomplete +0' "$folder/$1-again.log" || fail "after $1, frames are incomplete"
    is_free || fail "after $1, the camera is not free"
}

others_do_not_disturb() {
    local log=$folder/second.log mac=025753010001 nothing=000000000000000000000000
    begin others
    written 8006 0000 20001 MONO 0001 00000a00 00000002
    written 8006 0000 20001 MONO 0002 00000d00 00000000
    [[ $(value 20001 MONO 0003 00000a00) == 0000000[23] ]] || fail "zelcam has no control"
    # Of the messages that reach a device while it is controlled, FORCEIP must not change it.
    xxd -r -p <<<"4211000400380004""0000$mac$nothing""0a4d0014$nothing""ffffff00$nothing""0a4d00fe" |
        client socat -u - "UDP4-DATAGRAM:10.77.0.255:3956,broadcast,bind=:20005"
    client arv-tool-0.8 -a "$(address_of MONO)" control Width=64 >"$folder/others-arv.log" 2>&1 || true
    client "$zelcam" list >"$folder/others-list.log" 2>&1
    grep -q "$here" "$folder/others-list.log" || say "zelcam list does not name the holder: $(cat "$folder/others-list.log")"
    ! client "$zelcam" grab -n 1 -f none "${patient[@]}" >"$log" 2>&1 || fail "a second zelcam grabbed as well"
    grep -q "controlled by $here:" "$log" || fail "zelcam does not say who has the camera: $(cat -- "$log")"
    client "$zelcam" get Width -a readonly "${patient[@]}" >"$folder/readonly.log" 2>&1 || fail "nobody may look: $(cat "$folder/readonly.log")"
    goes_on others
    stop others
}

# Another program has the camera first. When it is gone, and its port is free, the camera can be had.
others_are_left_alone() {
    local log=$folder/left-alone.log
    write 20001 MONO 0001 00000a00 00000002
    listen 20001
    ! client "$zelcam" grab -n 1 -f none "${patient[@]}" >"$log" 2>&1 || fail "zelcam took a camera that another controls"
    grep -q "controlled by $here:20001" "$log" || fail "zelcam does not say who has the camera: $(cat -- "$log")"
    is_controlled || fail "the heartbeat was over before the test"
    deaf 20001
    can_begin_again "another's control"
}

control_is_lost() {
    begin taken
    tell power-cycle MONO
    ends taken '^zelcam: the camera is lost'
    can_begin_again "a power cycle"
    begin reset
    client "$zelcam" exec MONO DeviceReset -a readonly "${patient[@]}" >/dev/null 2>&1 || true
    goes_on reset
    stop reset
    begin moved
    tell address MONO "$spare"
    ends moved '^zelcam: the camera is lost'
    can_begin_again "another address"
    tell address MONO "$(address_of MONO)"
    can_begin_again "the first address"
    begin unplugged
    tell unplug MONO
    ends unplugged '^zelcam: the camera is lost'
    tell plug MONO
    soon is_awake
    can_begin_again "a plugged cable"
}

killed_programs_leave_no_trace() {
    begin killed
    kill -KILL "${grabs[killed]}"
    wait "${grabs[killed]}" 2>/dev/null || true
    is_controlled || fail "the heartbeat was over before the test"
    can_begin_again "a killed program"
}

stopped_programs_lose_the_camera() {
    begin paused
    kill -STOP "${grabs[paused]}"
    sleep 1  # which the heartbeat allows
    kill -CONT "${grabs[paused]}"
    goes_on paused
    stop paused any
    begin suspended
    kill -STOP "${grabs[suspended]}"
    soon is_free
    kill -CONT "${grabs[suspended]}"
    ends suspended '^zelcam: the camera is lost'
    can_begin_again "a suspended program"
}

cables_and_addresses_come_and_go() {
    begin pulled
    client ip link set cable down
    sleep 1
    client ip link set cable up
    goes_on pulled
    stop pulled any
    begin "pulled for long"
    client ip link set cable down
    ends "pulled for long" '^zelcam: the camera is lost'
    soon is_free
    client ip link set cable up
    can_begin_again "a cable that was pulled"
    begin readdressed
    client ip address del "$here/24" dev cable
    client ip address add 10.77.0.2/24 brd + dev cable
    ends readdressed '^zelcam: the camera is lost'
    soon is_free
    can_begin_again "another address of the host"
    client ip address del 10.77.0.2/24 dev cable
    client ip address add "$here/24" brd + dev cable
    can_begin_again "the first address of the host"
}

every_camera_passes_the_check() {
    local serial log
    stop_zelsim
    start_zelsim tests/witness/cameras.xml
    soon is_listed 7004
    for serial in 7001 7002 7003 7004; do
        log=$folder/check-$serial.log
        client "$zelcam" check "$serial" "${patient[@]}" >"$log" 2>&1 || fail "$serial: $(cat -- "$log")"
        say "$serial: $(tail -n 1 -- "$log")"
    done
}

trouble_is_survived() {
    others_do_not_disturb
    others_are_left_alone
    control_is_lost
    killed_programs_leave_no_trace
    stopped_programs_lose_the_camera
    cables_and_addresses_come_and_go
}
