# shellcheck shell=bash disable=SC2034,SC2154  # a part of scripts/witness-zelcam
# zelcam uses the fake camera of aravis, which was not written with this project: version 0.0, no MAC, ids that
# wrap after some frames, no resends, no test packets, no events.

fake_camera_works() {
    local log=$folder/fake fake width
    arv-fake-gv-camera-0.8 -i "$spare" -s GEV01 >"$log-camera.log" 2>&1 &
    fake=$!
    soon is_listed GEV01
    client "$zelcam" info GEV01 >"$log-info.log" 2>&1 || client "$zelcam" list >"$log-info.log" 2>&1
    client "$zelcam" features GEV01 --visibility guru "${patient[@]}" >"$log-features.log" 2>&1 || fail "see $log-features.log"
    ! grep -F '!!' "$log-features.log" || fail "features of the fake camera cannot be read"
    for width in 64 256; do
        [[ $(client "$zelcam" set GEV01 "Width=$width" "${patient[@]}" 2>&1) == *"$width"* ]] || fail "the fake camera has another width"
        [[ $(client "$zelcam" get GEV01 Width --plain "${patient[@]}" 2>&1) == "$width" ]] || fail "the fake camera has another width"
    done
    fake_frames 1000
    ! client "$zelcam" events GEV01 -d 200 "${patient[@]}" >"$log-events.log" 2>&1 || fail "the fake camera has events: see $log-events.log"
    grep -q 'there is no feature "EventSelector"' "$log-events.log" || fail "zelcam does not say that the fake camera has no events"
    client "$zelcam" check GEV01 "${patient[@]}" >"$log-check.log" 2>&1 || fail "see $log-check.log"
    say "the fake camera: $(tail -n 1 -- "$log-check.log")"
    kill "$fake"
    wait "$fake" || true
}

is_listed() { client "$zelcam" list 2>&1 | tee "$folder/list.log" | grep -q "$1"; }

# fake_frames COUNT: none of them incomplete.
fake_frames() {
    local log=$folder/fake-grab.log line
    client "$zelcam" grab GEV01 -n "$1" -b 100 -f none --set AcquisitionFrameRate=200 "${patient[@]}" \
        >"$log" 2>&1 || fail "see $log"
    for line in "Frames +$1 in .*" 'Incomplete +0' 'Lost +0'; do
        grep -qxE "$line" "$log" || fail "not all frames of the fake camera came: $(cat -- "$log")"
    done
    say "the fake camera: $(grep -E '^Frames' "$log")"
}
