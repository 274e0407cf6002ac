# shellcheck shell=bash
# Which Debian packages a command needs, and how they get onto the machine. Sourced by ./dev.

# What the products link against. The cross build takes the same ones for arm64.
library_packages=(liblog4cpp5-dev libtinyxml2-dev libcli11-dev libdeflate-dev libjpeg-dev
    libtiff-dev nlohmann-json3-dev libexpat1-dev libzip-dev)
# The headers of Python are those of the version that python3 has.
python_packages=(libpython3-dev pybind11-dev)
# tshark reads messages that the encoders write into files; zelcam doctor is tested in network namespaces.
test_packages=(libgtest-dev libgmock-dev libpng-dev tshark iproute2 nftables util-linux
    python3-numpy python3-pytest)

# packages_for COMMAND: one package a line.
packages_for() {
    local build=(g++ cmake ninja-build pkg-config python3 "${library_packages[@]}" "${python_packages[@]}")
    local wanted
    case $1 in
        build | demo | install) wanted=("${build[@]}") ;;
        # A network between namespaces, and the camera and the conversions that ours are compared with.
        bench) wanted=("${build[@]}" "${test_packages[@]}" aravis-tools libopencv-imgproc-dev) ;;
        abi) wanted=(g++ abigail-tools) ;;
        test) wanted=("${build[@]}" "${test_packages[@]}" mypy) ;;
        sanitize) wanted=("${build[@]}" "${test_packages[@]}") ;;
        # What an example of the documents shows pictures with, if it is there.
        documents) wanted=(python3-opencv) ;;
        wheel) wanted=("${build[@]}" python3-numpy python3-pip python3-setuptools python3-venv python3-wheel) ;;
        mutations) wanted=("${build[@]}" "${test_packages[@]}" git) ;;
        package) wanted=("${build[@]}" dpkg-dev lintian mmdebstrap arch-test qemu-user-static) ;;
        witness)
            wanted=("${build[@]}" "${test_packages[@]}" aravis-tools aravis-tools-cli
                socat xxd) ;;
        fuzz) wanted=("${build[@]}" clang-14 libclang-rt-14-dev llvm-14) ;;
        lint)
            # clang-format and clang-tidy by version: another one formats and finds differently.
            wanted=("${build[@]}" "${test_packages[@]}"
                clang-14 clang-format-14 clang-tidy-14 cppcheck doxygen shellcheck) ;;
        arm64) wanted=(g++-aarch64-linux-gnu cmake ninja-build pkg-config python3 qemu-user-static) ;;
        *) return 1 ;;
    esac
    printf '%s\n' "${wanted[@]}"
}

# missing_packages PACKAGE...: those that are not installed, one a line.
missing_packages() {
    local installed package
    installed=$(dpkg-query -W -f '${Package} ${db:Status-Status}\n' "$@" 2>/dev/null |
        sed -n 's/ installed$//p') || true  # dpkg-query fails when it does not know one of them
    for package in "$@"; do
        grep -qxF -- "$package" <<<"$installed" || printf '%s\n' "$package"
    done
}

# as_root COMMAND...: runs it as root, or fails where that is impossible.
as_root() {
    if ((EUID == 0)); then
        "$@"
    elif command -v sudo >/dev/null && { sudo -n true 2>/dev/null || [[ -t 0 ]]; }; then
        sudo "$@"
    else
        return 1
    fi
}

# install_packages PACKAGE...: installs what is missing, says how to where it cannot.
install_packages() {
    local missing=()
    if [[ -n ${ZELCAM_SKIP_DEPS:-} ]]; then
        return
    fi
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        die "this is not a Debian system. Install what is called here in Debian 12:" \
            "  $*" "and set ZELCAM_SKIP_DEPS=1 to go on without this check."
    fi
    mapfile -t missing < <(missing_packages "$@")
    if ((${#missing[@]} == 0)); then
        return
    fi

    if ! as_root true; then
        die "packages are missing, and neither root nor sudo is at hand. Have them installed with:" \
            "  apt-get update && apt-get install --no-install-recommends ${missing[*]}"
    fi
    heading "Installing ${missing[*]}"
    local apt=(env DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=600)
    local log=build/packages.log
    mkdir -p build
    # A source that is out of reach only matters when a package comes from there.
    patiently build/package-lists.log as_root "${apt[@]}" update ||
        warn "the package lists could not all be refreshed, see build/package-lists.log"
    if ! patiently "$log" \
        as_root "${apt[@]}" install -y --no-install-recommends "${missing[@]}" </dev/null; then
        cat -- "$log" >&2
        die "apt-get could not install: ${missing[*]}"
    fi
}
