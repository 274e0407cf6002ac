# shellcheck shell=bash disable=SC2034,SC2154  # a part of scripts/witness
# What aravis must see of the cameras.

frames=1000
rate=215   # a second
seconds=5  # in which a camera sends them

arv_tool() { client arv-tool-0.8 -a "$(address_of "$1")" "${@:2}"; }

# figure LOG NAME: what aravis counted.
figure() { sed -n "s/^$2 *= *//p" "$1"; }

# lost_by CAMERA: frames that it took and could not send, as the machine had other things to do.
lost_by() { tell stats "$1" | sed -n 's/^lost-blocks=//p'; }

# stream CAMERA WHAT OPTIONS...: gets the frames, and fails unless each one that was sent is complete.
stream() {
    local camera=$1 what=$2 log="$folder/$1, $2.log" lost frame_count
    lost=$(lost_by "$camera")
    client arv-camera-test-0.8 --name "$(address_of "$camera")" --duration "$seconds" \
        --frequency "$rate" --packet-size-adjustment never --packet-request-ratio 1 "${@:3}" >"$log" 2>&1 || fail "see $log"
    lost=$(($(lost_by "$camera") - lost))
    frame_count=$(figure "$log" n_completed_buffers)
    say "$camera, $what: $frame_count frames, $(figure "$log" n_resent_packets) packets resent, $lost not sent"
    ((frame_count >= frames && $(figure "$log" n_failures) == 0 &&
        $(figure "$log" n_size_mismatch_errors) == 0 && $(figure "$log" n_missing_frames) <= lost)) ||
        fail "$camera, $what: see $log"
}

listed_and_described() {
    local camera address list
    list=$(client arv-tool-0.8)
    say "$list"
    for camera in "${cameras[@]}"; do
        address=$(address_of "$camera")
        grep -q "($address)" <<<"$list" || fail "$camera is not listed"
        arv_tool "$camera" genicam >"$folder/$camera.xml"
        grep -q '</RegisterDescription>' "$folder/$camera.xml" || fail "$camera has no description"
        arv_tool "$camera" features >"$folder/$camera-features.log"
        arv_tool "$camera" values >"$folder/$camera-values.log" 2>&1
        ! grep -iE 'error|failed|not found' "$folder/$camera-values.log" ||
            fail "$camera has features that cannot be read"
    done
}

# reads CAMERA FEATURE VALUE: what aravis reads after it set the value.
set_and_read() {
    local answer
    answer=$(arv_tool "$1" control "$2=$3" "$2")
    grep -qE "^$2 = $3( |$)" <<<"$answer" || fail "$1: $2 should be $3: $answer"
}

features_follow() {
    local camera width
    for camera in "${cameras[@]}"; do
        width=$(arv_tool "$camera" control Width | sed -nE 's/^Width = ([0-9]+).*/\1/p')
        set_and_read "$camera" Width 64
        set_and_read "$camera" Width "$width"
        set_and_read "$camera" ExposureTime 2000
        set_and_read "$camera" TestPattern GreyDiagonalRamp
        set_and_read "$camera" DeviceUserID "Witness $camera"
    done
}

streams_are_complete() {
    local camera size
    for camera in "${cameras[@]}"; do
        for size in 1500 9000; do
            stream "$camera" "packets of $size bytes" --gv-packet-size "$size"
            tell set "$camera" LossRate 0.01
            stream "$camera" "packets of $size bytes, 1 % lost" --gv-packet-size "$size"
            tell set "$camera" LossRate 0
        done
    done
    grep -qE 'n_resent_packets *= *[1-9]' "$folder"/*lost.log || fail "nothing was lost"
    stream BAYER "with chunks" --gv-packet-size 1500 --chunks Width,FrameID,Timestamp
    stream COLOUR "multi-part" --gv-packet-size 1500 --multipart
    stream COLOUR "a region" --gv-packet-size 1500 --width 200 --height 100
    grep -q 'image width *= 200' "$folder/COLOUR, a region.log" || fail "the region was not taken"
}

triggers_give_frames() {
    local log="$folder/triggers.log"
    client arv-camera-test-0.8 --name "$(address_of MONO)" --duration 3 --software-trigger 50 >"$log" 2>&1 ||
        fail "see $log"
    say "MONO, software triggers: $(figure "$log" n_completed_buffers) frames"
    (($(figure "$log" n_completed_buffers) >= 100 && $(figure "$log" n_failures) == 0)) || fail "see $log"
}
