# shellcheck shell=bash disable=SC2034,SC2154  # a part of scripts/witness-zelcam
# A session in which zelcam sends a message of every kind, for tshark to read.

zelcam_session() {
    {
        client "$zelcam" list
        client "$zelcam" ip force 1 "$spare" 255.255.255.0 10.77.0.254
        client "$zelcam" ip force 1 "$(address_of MONO)" 255.255.255.0
        client "$zelcam" exec 1 ActionCommand -m interface
        client "$zelcam" get 1 Width -a readonly
        client "$zelcam" read 1 0x49 5
        client "$zelcam" set 1 DeviceUserID=Commands Width=320 ExposureTime=2000
        client "$zelcam" events 1 FrameEnd --grab -n 20
        client "$zelcam" grab -n 300 -f none "${patient[@]}"
        serve_with LossEvery=40 ExtendedIdsOn=true
        client "$zelcam" grab -n 20 -f none "${patient[@]}"
    } >"$folder/zelcam-session.log" 2>&1 || fail "see $folder/zelcam-session.log"
}

every_command_is_right() {
    serve_with LossEvery=40
    recorded "$folder/commands.pcapng" zelcam_session
    tshark -n -r "$folder/commands.pcapng" -T pdml >"$folder/commands.pdml" 2>"$folder/commands-tshark.log"
    right_commands >"$folder/right-commands"
    awk -v client="$here" -v cameras="$(address_of MONO) MONO $spare MOVED" -f tests/witness/table.awk \
        -f tests/witness/commands.awk "$folder/right-commands" "$folder/commands.pdml" >"$folder/command-faults" ||
        fail "tshark reads what is wrong: $(head -n 40 -- "$folder/command-faults")"
    say "tshark reads $(grep -c '<field name="gv' "$folder/commands.pdml") fields, and each that zelcam sends is as it should be"
}
