# shellcheck shell=bash disable=SC2034,SC2154  # a part of scripts/witness-zelcam
# zelcam uses a camera with each of its switches: tests/witness/switchtable.sh says what must come.

frames_of_a_row=30
declare -A exits=([closed]=4 [dumb]=8)

# The bytes of each frame that there can be, one hash a line: of a camera without a network, which waits for
# buffers, so that it leaves no frame out.
reference() {
    local features=$1 filter=$2 file=$folder/reference-$1-$2 frames=$folder/reference options
    if [[ ! -f $file ]]; then
        mkdir "$frames"
        settings "${features//Gev*=true/-}"
        sed 's/frameRate="[0-9]*"/frameRate="0"/' tests/witness/camera.xml >"$folder/reference.xml"
        ZELSIM_CONFIG=$folder/reference.xml "$zelcam" grab --simulated -n 200 "${options[@]}" \
            -o "$frames/{frame}.raw" >"$file.log" || fail "there is no reference: see $file.log"
        hashes_of "$frames" "$filter" >"$file"
        [[ $filter != half ]] || hashes_of "$frames" whole >>"$file"
        rm -r -- "$frames"
    fi
    cat -- "$file"
}

swapped() { dd if="$1" conv=swab status=none; }
half() { head -c $(($(wc -c <"$1") / 2)) -- "$1"; }

# hashes_of FOLDER FILTER
hashes_of() {
    local frame
    if [[ $2 == whole ]]; then
        sha256sum -- "$1"/*.raw | cut -d' ' -f1
    else
        for frame in "$1"/*.raw; do "$2" "$frame" | sha256sum | cut -d' ' -f1; done
    fi
}

# serve_with NAME=VALUE...: a camera that has been switched on with these switches; "-" is none.
serve_with() {
    local setting attributes=""
    local -A switches=([Mac]=02:57:53:01:00:01 [ResendMemoryBlocks]=32 [BootMs]=20)
    for setting in "$@"; do [[ $setting == - ]] || switches[${setting%%=*}]=${setting#*=}; done
    for setting in "${!switches[@]}"; do attributes+=" $setting=\"${switches[$setting]}\""; done
    sed "s|<Network|&$attributes|" tests/witness/camera.xml >"$folder/camera.xml"
    stop_zelsim
    start_zelsim "$folder/camera.xml"
    tell power-cycle MONO
    soon is_awake
}

# Whether it answers to a discovery at its address.
is_awake() {
    [[ -n $(xxd -r -p <<<420100020000ffff |
        client socat -t 0.2 - "UDP4:$(tell get MONO Address | sed 's/.*=//'):3956,readbytes=256" | head -c 1 | xxd -p) ]]
}

# Nothing that a camera says of itself must reach a terminal as it is.
is_plain() {
    iconv -f utf-8 -t utf-8 <"$1" >/dev/null 2>&1 && ! LC_ALL=C grep -q $'[\x01-\x08\x0b-\x1f\x7f]' "$1"
}

# settings FEATURES: those with commas between them as options of zelcam.
settings() {
    local feature list
    IFS=, read -ra list <<<"$1"
    options=()
    for feature in "${list[@]}"; do [[ $feature == - ]] || options+=(--set "$feature"); done
}

# try_camera LOG FRAMES FEATURES: what a user does with a camera.
try_camera() {
    local options
    settings "$3"
    rm -rf -- "$2"
    mkdir -p -- "$2"
    {
        client "$zelcam" list && try_features &&
            client "$zelcam" grab -n "$frames_of_a_row" -t 3000 "${options[@]}" "${patient[@]}" -o "$2/{n}.raw" &&
            cat -- "$2"/*.txt && tell stats MONO
    } >"$1" 2>&1
}

# A feature that the camera refuses is shown so, and the others all the same.
try_features() {
    local result=0
    client "$zelcam" features --visibility guru "${patient[@]}" || result=$?
    ((result == 0)) || grep -qE '^zelcam: [0-9]+ features? cannot be read' "$log" || return "$result"
}

# frames_are WHAT FOLDER FEATURES: whether they are the bytes that the sensor gave, each once.
frames_are() {
    if [[ $1 == some ]]; then
        compgen -G "$2/*-incomplete.raw" >/dev/null
        return
    fi
    [[ $1 != half ]] || (($(find "$2" -name '*.raw' -size -160k | wc -l) >= frames_of_a_row / 3)) || return
    hashes_of "$2" whole | sort -u >"$2/hashes"
    (($(reference "$3" "$1" | sort | comm -12 - "$2/hashes" | wc -l) == frames_of_a_row))
}

# row SWITCH FURTHER FEATURES WHAT [PATTERN]: says what is wrong.
row() {
    local setting=$1 features=$3 what=$4 pattern=${5:-} further log frames=$folder/frames result=0
    log=$folder/switch-$setting.log
    IFS=, read -ra further <<<"$2"
    serve_with "$setting" "${further[@]}"
    try_camera "$log" "$frames" "$features" || result=$?
    is_plain "$log" || say "$setting: control characters are shown"
    [[ $pattern == *"cannot be read" ]] || ! grep -qF "cannot be read" "$log" || say "$setting: features cannot be read"
    if [[ $what == closed || $what == dumb ]]; then
        ((result == exits[$what])) || say "$setting: it is not $what, but ends with $result"
    elif ((result != 0)); then
        say "$setting: $(tail -n 3 -- "$log")"
        return
    else
        frames_are "$what" "$frames" "$features" || say "$setting: these are not the frames that the camera sent"
        [[ $what == some ]] || grep -qxE 'Incomplete +0' "$log" || say "$setting: frames are incomplete"
    fi
    grep -qE -- "$pattern" "$log" || say "$setting: there is no \"$pattern\" in $log"
}

each_switch_has_a_row() {
    diff <("$zelsim" --switches | awk '{ print $1 }' | sort -u) \
        <(switch_table | sed -n 's/^\([A-Za-z0-9]*\)=.*/\1/p' | sort -u) >"$folder/rows" ||
        fail "switches without a row, or rows without a switch: $(cat -- "$folder/rows")"
}

# switches_do_not_stop_zelcam HALF: with every other row, from the first or the second one on. Where others use
# the processors, frames may be lost for that reason: few rows may need a second try.
switches_do_not_stop_zelcam() {
    local setting further features what pattern faults=$folder/switch-faults rows=0 tried=0 again=0
    each_switch_has_a_row
    : >"$faults"
    while read -r setting further features what pattern; do
        [[ $setting == *=* ]] || continue
        ((rows++ % 2 == $1)) || continue
        tried=$((tried + 1))
        row "$setting" "$further" "$features" "$what" "$pattern" </dev/null >"$folder/row"
        if [[ -s $folder/row ]] && ((again++ < 2)); then
            say "once more, as: $(cat -- "$folder/row")"
            row "$setting" "$further" "$features" "$what" "$pattern" </dev/null >"$folder/row"
        fi
        cat -- "$folder/row" >>"$faults"
    done < <(switch_table)
    serve_with -
    [[ ! -s $faults ]] || fail "$(cat -- "$faults")"
    say "zelcam gets every frame of a camera with each of $tried settings, or says why not"
}
