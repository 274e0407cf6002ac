# shellcheck shell=bash disable=SC2034,SC2154  # a part of scripts/witness
# A session with a message of every kind, for tshark to read: aravis uses all cameras at once, then come
# literal datagrams. Their ids begin with the digit of their part; those of aravis are below and above.

# What the cameras are set to before and after; they keep it from one client to the next.
prepare_session() {
    {
        arv_tool MONO control Width=320 Height=100 EventSelector=FrameEnd EventNotification=On
        arv_tool BAYER control Width=320 Height=100
        arv_tool PACKED control TriggerSource=Action0
    } >"$folder/prepared.log"
}
end_session() {
    {
        arv_tool MONO control OffsetX=0 OffsetY=0 Width=640 Height=480 EventSelector=FrameEnd EventNotification=Off
        arv_tool BAYER control Width=640 Height=480
        arv_tool PACKED control TriggerMode=Off
    } >>"$folder/prepared.log"
}

declare -A scsp

# Discovery, control, and pictures with resends.
aravis_uses_all() {
    local camera clients=()
    client arv-tool-0.8 >"$folder/session.log"
    for camera in "${cameras[@]}"; do
        local options=(--register-cache enable)
        [[ $camera != COLOUR ]] || options=(--multipart --chunks FrameID)
        [[ $camera != BAYER ]] || options=(--chunks 'Width,FrameID,Timestamp')
        tell set "$camera" LossRate 0.02
        client arv-camera-test-0.8 --name "$(address_of "$camera")" --duration 1 --frequency 5 \
            --frame-retention 1000 --packet-size-adjustment always "${options[@]}" \
            >"$folder/session-$camera.log" 2>&1 &
        clients+=($!)
    done
    wait "${clients[@]}"
    tell set all LossRate 0
}

# The ports that streams and events come from.
read_ports() {
    local camera
    for camera in "${cameras[@]}"; do scsp[$camera]=$((0x$(value 20002 "$camera" 1050 00000d1c))); done
    value 20002 BAYER 1054 00000904 >/dev/null  # how many streams it has
    scsp[SECOND]=$((0x$(value 20002 BAYER 1051 00000d5c)))
    mcsp=$((0x$(value 20002 MONO 1052 00000b1c)))
    packed_mcsp=$((0x$(value 20002 PACKED 1052 00000b1c)))
}

# All of the bootstrap area, with values that can be told from each other.
registers() {
    local name=456c6576656e00000000000000000000 text  # "Eleven"
    write 20001 MONO 1001 00000a00 00000006           # control that others may take over
    answered 20001 MONO "4201008600141002000000e8$name" 000000870004100200000010
    # A persistent address; a heartbeat of 6 s; discovery up to 7 ms late; status codes and PENDING_ACK.
    write 20001 MONO 1003 00000014 00000007 0000064c c0a80763 0000065c ffff0000 0000066c c0a80701
    write 20001 MONO 1004 00000938 00001770 00000950 00000007 00000954 00040006
    # Events to port 20009: 400 ms for an acknowledge, and two retries.
    write 20001 MONO 1005 00000b10 0a4d0001 00000b00 00004e29 00000b14 00000190 00000b18 00000002
    # Packets of 1500 bytes, which are not to be fragmented; resent ones to the client that asks.
    write 20001 MONO 1006 00000d18 0a4d0001 00000d00 00005209 00000d04 400005dc 00000d08 000003e8 00000d24 00000008
    write 20001 MONO 1007 0000090c 00000007 00009800 00000008 00009804 00000003
    write 20001 MONO 1008 00000944 00000002  # latches the time
    {
        value 20001 MONO 1010 00000000 00000004 00000008 0000000c 00000010 00000014 00000024 00000034 00000044
        value 20001 MONO 1011 00000600 0000064c 0000065c 0000066c 00000670 00000900 00000904 00000908 00000910
        value 20001 MONO 1012 0000092c 00000930 00000934 00000938 0000093c 00000940 00000950 00000954 00000958
        value 20001 MONO 1013 00000960 00000964 00000968 0000096c 00000970 00000a00 00000a04 00000a14
        value 20001 MONO 1014 00000b00 00000b10 00000b14 00000b18 00000b1c
        value 20001 MONO 1015 00000d00 00000d04 00000d08 00000d18 00000d1c 00000d20 00000d24 00009800 00009804
        for text in 10200000004800000020 10210000006800000020 10220000008800000020 1023000000a800000030 \
            1024000000d800000010 1025000000e800000010 10260000020000000200 10270000040000000200; do
            ask 20001 MONO "420100840008$text" $((12 + 0x${text: -4}))
        done
    } >"$folder/registers"
    begun=$(value 20001 MONO 1016 00000948 0000094c)
    write 20001 MONO 1030 00000014 00000006 00000950 00000000 00000954 00000000
}

# A refused command for each status.
refusals() {
    local calibrate
    calibrate=$(register MONO BlackLevelCalibrate)
    answered 20001 MONO 4201020000002001 8001020100002001
    tell set MONO GvcpCapabilitiesOff 0x2
    answered 20001 MONO 4201008600082002000000e800000000 800100870004200200000000
    tell set MONO GvcpCapabilitiesOff 0x0
    written 8002 0000 20001 MONO 2003 00000d04 00000000
    answered 20001 MONO 4201008400082004000000000000021c 8002008500002004
    answered 20001 MONO 420100800004200500008ffc 8003008100002005
    written 8003 0000 20001 MONO 2006 00008ffc 00000000
    written 8004 0000 20001 MONO 2007 00000934 00000000
    answered 20001 MONO 42010086000820080000004800000000 800400870004200800000000
    written 8004 0001 20001 MONO 2009 00000938 00001770 00000934 00000000
    answered 20001 MONO 420100800004200a00000902 800500810000200a
    answered 20001 MONO 420100840008200b00000000000001fe 800500850000200b
    written 8006 0000 20002 MONO 200c 00000938 00000bb8
    written 8007 0001 20001 MONO 200d "$calibrate" 00000001 "$calibrate" 00000001
    write 20001 MONO 200f 00000a00 00000001
    answered 20002 MONO 420100800004201000000938 8006008100002010
    write 20001 MONO 2011 00000a00 00000002
}

# A command that takes its time.
late_answer() {
    write 20001 MONO 2020 00000954 00000002
    tell set MONO PendingAckMs 150
    answered 20001 MONO 420100800004202100000938 000000890004202100000096000000810004202100001770
    tell set MONO PendingAckMs 0
    write 20001 MONO 2022 00000954 00000000
}

# Without an acknowledge, with one, and without asking for one.
events() {
    listen 20009
    tell event MONO
    soon has_come 20009 $((3 * 24))
    deaf 20009
    acknowledged 20009 00c1 0002 tell event MONO
    write 20001 MONO 3001 00000b14 00000000
    listen 20009
    tell event MONO
    soon has_come 20009 24
}

# Three blocks go to port 21001, and then one to 21002, all in one packet.
streams() {
    local width height mode count
    width=$(register MONO Width) height=$(register MONO Height)
    mode=$(register MONO AcquisitionMode) count=$(register MONO AcquisitionFrameCount)
    listen 21001 21002
    write 20001 MONO 4001 00000d04 c0000240  # a test packet
    soon has_come 21001 548
    write 20001 MONO 4002 00000d04 400005dc "$mode" 00000002 "$count" 00000003
    write 20001 MONO 4009 "$(register MONO OffsetX)" 00000010 "$(register MONO OffsetY)" 00000008
    acquire MONO 4003 3
    resend 20003 MONO 4004 0002 00000001 00000002  # data
    resend 20004 MONO 4005 0002 00000000 00000000  # the leader
    resend 20005 MONO 4006 0002 00000017 00000017  # the trailer
    resend 20006 MONO 4007 0002 00000018 00000018  # nothing
    resend 20007 MONO 4008 0009 00000001 00000001  # of a block to come

    write 20001 MONO 4010 00000d00 00000000 00000d24 0000000c "$width" 00000020 "$height" 00000020 "$count" 00000001
    write 20001 MONO 4011 00000d00 0000520a 00000b14 00000190
    deaf 20009
    acknowledged 20009 00c3 0007 acquire MONO 4012 1
    write 20001 MONO 4013 00000d00 00000000 00000b14 00000000
}

# The same with ids of 64 bits, all in one packet to port 21004, and to port 21003.
streams_with_64_bits() {
    listen 20009 21003 21004
    write 20001 MONO 5001 00000960 40000000 00000d00 0000520c
    tell event MONO
    acquire MONO 5002 1
    write 20001 MONO 5003 00000d00 00000000 00000d24 00000000 "$(register MONO Height)" 00000064
    write 20001 MONO 5004 00000d00 0000520b
    acquire MONO 5005 1
    resend64 20003 MONO 5006 0000000000000001 00000001 00000002  # data
    resend64 20003 MONO 5007 0000000000000001 00000005 00000005  # nothing
    resend64 20003 MONO 5008 0000000000000009 00000001 00000001  # of a block to come
    write 20001 MONO 5009 00000d00 00000000 00000960 00000000 00000b00 00000000 "$(register MONO AcquisitionMode)" 00000000
    ended=$(after MONO 500a 0)
    write 20001 MONO 500b 00000a00 00000000
    deaf 20009
}

# The same blocks to port 21011, and in smaller packets to port 21012.
two_channels() {
    listen 21011 21012
    write 20001 BAYER 6001 00000a00 00000002
    write 20001 BAYER 6002 00000d18 0a4d0001 00000d00 00005213 00000d04 000005dc
    write 20001 BAYER 6003 00000d58 0a4d0001 00000d40 00005214 00000d44 00000240
    write 20001 BAYER 6006 "$(register BAYER AcquisitionMode)" 00000002 "$(register BAYER AcquisitionFrameCount)" 00000002
    acquire BAYER 6007 4
    resend 20003 BAYER 6008 0001 00000001 00000002 0001
    write 20001 BAYER 6009 "$(register BAYER AcquisitionMode)" 00000000 00000a00 00000000
}

# With the status codes of 1.1, a refusal says why. Two blocks go to port 21013, and one is remembered.
reasons_of_refusals() {
    listen 21013
    tell set BAYER ResendMemoryBlocks 1
    write 20001 BAYER 6101 00000a00 00000002 00000954 00000004
    write 20001 BAYER 6102 00000d18 0a4d0001 00000d00 00005215 00000d04 000005dc
    write 20001 BAYER 6103 "$(register BAYER AcquisitionMode)" 00000002
    acquire BAYER 6104 2
    resend 20006 BAYER 6105 0001 00000001 00000001
    write 20001 BAYER 6106 "$(register BAYER AcquisitionMode)" 00000000 00000a00 00000000
    tell set BAYER ResendMemoryBlocks 32
}

# action PORT ID STATUS [TIME]: ACTION for signal 0, and what its acknowledge says.
action() {
    local keys=00000007000000080000000f flags=01
    [[ -z ${4:-} ]] || flags=81
    answered "$1" PACKED "42${flags}0100$(bytes "$keys${4:-}")$2$keys${4:-}" "${3}01010000$2"
}

# after CAMERA ID MILLISECONDS: the time of the camera, so much later.
after() {
    write 20001 "$1" "$2" 00000944 00000002
    printf '%016x\n' $((0x$(value 20001 "$1" "$2" 00000948 0000094c) + 1000000 * $3))
}

# Frames of triggers by actions go to port 21021, and events to port 20010.
actions() {
    local sent i
    listen 20010 21021
    write 20001 PACKED 7001 00000a00 00000002 00000954 00040000
    write 20001 PACKED 7002 0000090c 00000007 00009800 00000008 00009804 00000001
    write 20001 PACKED 7003 00000b10 0a4d0001 00000b00 00004e2a
    write 20001 PACKED 7004 00000d18 0a4d0001 00000d00 0000521d 00000d04 000005dc
    write 20001 PACKED 7005 "$(register PACKED TriggerMode)" 00000001 "$(register PACKED AcquisitionStart)" 00000001
    sent=$(blocks_of PACKED)
    action 20002 7006 0000
    soon has_sent PACKED $((sent + 1))
    scheduled=$(after PACKED 7007 1000)
    action 20002 7008 0000 "$scheduled"
    soon has_sent PACKED $((sent + 2))
    action 20002 7009 8016 0000000000000001
    soon has_come 20010 24
    tell set PACKED TickFrequencyZero true
    action 20002 700a 8013 ffffffffffffffff
    tell set PACKED TickFrequencyZero false
    for i in 1 2 3 4 5 6 7 8; do action 20002 "701$i" 0000 7fffffffffffffff; done  # as many as can wait
    action 20002 7019 8015 7fffffffffffffff
    write 20001 PACKED 7020 00000954 00000000
    action 20002 7021 8fff 0000000000000001
    soon has_come 20010 48
    write 20001 PACKED 7022 00000a00 00000000
    deaf 20010
}

# force_ip FLAGS ID ADDRESS: FORCEIP to all for PACKED, with a mask and a gateway.
force_ip() {
    local nothing=000000000000000000000000 answer
    answer=$(xxd -r -p <<<"42${1}00040038${2}0000025753010002$nothing$3${nothing}ffffff00${nothing}0a4d00fe" |
        client socat -t 0.3 - "UDP4-DATAGRAM:10.77.0.255:3956,broadcast,bind=:20005" | xxd -p -c 0)
    [[ $answer == "000000050000$2" ]] || fail "PACKED answered $answer to FORCEIP"
}

is_found_at() {
    [[ $(client arv-tool-0.8 -a "$1" control DeviceSerialNumber) == *7002* ]] || fail "PACKED is not at $1"
}

# Away and back again.
forced_addresses() {
    force_ip 01 8001 0a4d0014
    client arv-tool-0.8 >>"$folder/session.log"
    grep -qF "Packed-7002 ($spare)" "$folder/session.log" || fail "PACKED is not listed at $spare"
    is_found_at "$spare"
    force_ip 11 8002 0a4d000c
    is_found_at "$(address_of PACKED)"
}

session() {
    aravis_uses_all
    read_ports
    registers
    refusals
    late_answer
    events
    streams
    streams_with_64_bits
    two_channels
    reasons_of_refusals
    actions
    forced_addresses
}
