# shellcheck shell=bash disable=SC2034,SC2154  # a part of scripts/witness
# What tshark reads in a session.

# Everything that goes over the cable while the commands run, in FILE.
recorded() {
    local file=$1 recorder
    shift
    nsenter --net="/proc/$client/ns/net" -- dumpcap -q -i cable -f udp -w "$file" 2>"$file.log" &
    recorder=$!
    until grep -qs 'File:' "$file.log"; do sleep 0.05; done
    "$@"
    sleep 0.3
    kill "$recorder"
    wait "$recorder" || true
}

# description_size CAMERA: what aravis read of it, in hex; it shows it with one more line feed.
description_size() { printf '%X' $(($(wc -c <"$folder/$1.xml") - 1)); }

session_is_dissected() {
    local as=() port camera names
    for port in "${scsp[@]}"; do as+=(-d "udp.port==$port,gvsp"); done
    for port in 20009 20010; do as+=(-d "udp.port==$port,gvcp"); done
    tshark -n -r "$folder/session.pcapng" "${as[@]}" -T pdml >"$folder/session.pdml" 2>"$folder/tshark.log"
    names="$spare MOVED"
    for camera in "${cameras[@]}"; do names+=" $(address_of "$camera") $camera"; done
    right_values >"$folder/right"
    awk -v client="$here" -v cameras="$names" -v folder="$folder" -f tests/witness/table.awk -f tests/witness/dissection.awk \
        "$folder/right" "$folder/session.pdml" >"$folder/faults" ||
        fail "tshark reads what is wrong: $(head -n 40 -- "$folder/faults")"
    # Both channels sent the same frames.
    cmp "$folder"/block-BAYER-21011.1 "$folder"/block-BAYER-21012.1
    cmp "$folder"/block-BAYER-21011.2 "$folder"/block-BAYER-21012.2
    say "tshark reads $(grep -c '<field name="gv' "$folder/session.pdml") fields, and each is as it should be"
}
