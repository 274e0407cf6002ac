# shellcheck shell=bash disable=SC2034,SC2154  # a part of scripts/witness-zelcam
# A session in which zelcam sends a message of every kind, for tshark to read.

# As many ports as there are, so that a program hardly gets one twice: its sockets are told apart by them.
program_ports=22000-65000

# next_program ARGUMENTS...: zelcam, with a datagram before it that says so.
next_program() {
    client "$BASH" -c "echo >/dev/udp/$(address_of MONO)/9"
    client "$zelcam" "$@"
}

zelcam_session() {
    choose_ports_from "$program_ports"
    {
        next_program list
        next_program ip force 1 "$spare" 255.255.255.0 10.77.0.254
        next_program ip force 1 "$(address_of MONO)" 255.255.255.0
        next_program exec 1 ActionCommand -m interface
        next_program get 1 Width -a readonly
        next_program read 1 0x49 5
        next_program set 1 DeviceUserID=Commands Width=320 ExposureTime=2000
        next_program events 1 FrameEnd --grab -n 20
        next_program grab -n 300 -f none "${patient[@]}"
        serve_with LossEvery=40 ExtendedIdsOn=true
        next_program grab -n 20 -f none "${patient[@]}"
    } >"$folder/zelcam-session.log" 2>&1 || fail "see $folder/zelcam-session.log"
    choose_ports_from "$ports"
}

# Protocols that tshark would see behind these ports.
other_protocols() { tshark -G decodes 2>/dev/null | awk '$1 == "udp.port" && $2 >= 10000 { print $3 }' | sort -u; }

every_command_is_right() {
    local others=() protocol
    for protocol in $(other_protocols); do others+=(--disable-protocol "$protocol"); done
    serve_with LossEvery=40
    recorded "$folder/commands.pcapng" zelcam_session
    tshark -n -r "$folder/commands.pcapng" "${others[@]}" -T pdml >"$folder/commands.pdml" 2>"$folder/commands-tshark.log"
    right_commands >"$folder/right-commands"
    awk -v client="$here" -v cameras="$(address_of MONO) MONO $spare MOVED" -f tests/witness/table.awk \
        -f tests/witness/commands.awk "$folder/right-commands" "$folder/commands.pdml" >"$folder/command-faults" ||
        fail "tshark reads what is wrong: $(head -n 40 -- "$folder/command-faults")"
    say "tshark reads $(grep -c '<field name="gv' "$folder/commands.pdml") fields, and each that zelcam sends is as it should be"
}
