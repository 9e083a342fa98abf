# SPDX-License-Identifier: MIT
# Sourced by the other scripts: the Debian and Ubuntu packages that the project needs, and their purpose.
# shellcheck disable=SC2034

build_packages='
g++                     compiler, C++20
cmake                   build description
ninja-build             build tool
pkg-config              finds Aravis
binutils                nm and objdump, for the tests of the exports
qtbase5-dev             Qt 5: the viewer
libaravis-dev           Aravis 0.8: GigE Vision and USB3 Vision cameras
libusb-1.0-0-dev        named by the description of Aravis
libopencv-imgproc-dev   conversion of pixel formats
qt5-image-formats-plugins  the codec of TIF files, loaded when one is saved
'
test_packages='
libgtest-dev            tests of the camera library
libgmock-dev            matchers for the same
aravis-tools            the GigE Vision camera process of the tests
xvfb                    a display where there is none
xauth                   asked for by the same
openbox                 a window manager on that display
xdotool                 clicks and types there
imagemagick             screenshots
x11-utils               asks the display for windows and their properties
fonts-dejavu-core       letters
iproute2                network namespaces of the GigE Vision tests: ip
util-linux              the same: unshare
doxygen                 the reference of the header, made without a warning
'
benchmark_packages='
libbenchmark-dev        measures conversions; only with -DORVALIS_BENCHMARKS=ON
'
fuzz_packages='
clang                   compiler of the fuzzers
libclang-rt-dev         libFuzzer and the sanitizers for it
'
coverage_packages='
gcovr                   which lines and branches the tests reach
'
lint_packages='
clang-format            layout of the source
clang-tidy              habits of the source
cppcheck                a second opinion
shellcheck              habits of the scripts
desktop-file-utils      checks the desktop file
appstream               checks the metadata for software centres
man-db                  checks the manual page
lintian                 checks the Debian package
'

# missing_of <package>...: prints the packages that are not installed.
missing_of() {
    local installed
    installed=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' "$@" 2>/dev/null |
        awk '$1 == "installed" { print $2 }') || true
    printf '%s\n' "$@" | grep -vxF -e "$installed" || true
}

# install_missing <list>...: installs missing packages and prints their names; silent if nothing is missing.
install_missing() {
    local missing packages
    if ! command -v dpkg-query >/dev/null; then
        echo "This is not Debian or Ubuntu; continuing with the installed packages." >&2
        return 0
    fi
    mapfile -t packages < <(printf '%s\n' "$@" | awk 'NF { print $1 }')
    mapfile -t missing < <(missing_of "${packages[@]}")
    [ ${#missing[@]} -gt 0 ] || return 0

    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Packages are missing, and installing them needs root or sudo: ${missing[*]}" >&2
            return 1
        fi
        as_root=(sudo)
    fi
    echo "Installing: ${missing[*]}"
    local log
    log=$(mktemp)
    if ! { "${as_root[@]}" apt-get update &&
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
            apt-get install -y --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        return 1
    fi
    rm -f "$log"
}
