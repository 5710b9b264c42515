# SPDX-License-Identifier: GPL-3.0-or-later

# What scripts and the tests' wrappers have in common. Sourced, not run.
# shellcheck shell=bash disable=SC2034

export LC_ALL=C.UTF-8 PATH=$PATH:/usr/sbin:/sbin

project=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)

# What the project is built with, what the windows under test need around them, what scripts/test
# counts with and what tests compare with, what the style lane looks with and what the emulated kernel
# runs on. These names hold on Debian 12 and 13.
build_packages=(g++ cmake ninja-build ccache pkgconf qt6-base-dev qt6-serialport-dev qt6-tools-dev
                qt6-l10n-tools libfontconfig-dev libxcb1-dev libxcb-randr0-dev libwayland-dev libcli11-dev
                libpcap-dev libarchive-dev libqcustomplot-dev)
# What the manual is made with, where windows or packages are to have one.
manual_packages=(pandoc)
desktop_packages=(xvfb openbox trayer xdotool imagemagick x11-utils x11-xserver-utils xauth
                  xcompmgr fonts-dejavu-core fonts-wqy-microhei fonts-wine qt6-translations-l10n
                  dbus-daemon at-spi2-core gir1.2-atspi-2.0 python3-gi sway weston grim qt6-wayland
                  procps util-linux)
test_packages=(python3 python3-jsonschema procps util-linux tshark prometheus
                prometheus-node-exporter ansible-core fish zsh poppler-utils tidy)
style_packages=(clang-format clang-tidy shellcheck appstream desktop-file-utils groff-base man-db reuse)
# The compiler whose sanitizers tests run with, and fuzz programs; it names places by llvm.
clang_packages=(clang libclang-rt-dev lld llvm)
kernel_packages=(qemu-system-x86 busybox-static systemd udev xz-utils procps)
# What looks for uses of memory that are wrong; it wants the symbols of the C library.
memory_packages=(valgrind libc6-dbg)
# What reports are opened in.
browser_packages=(chromium)
# What a Debian of another release is made with.
root_packages=(mmdebstrap util-linux)
# What tells which lines ran.
coverage_packages=(gcovr)
# What boots one.
boot_packages=(systemd-container)
# What packages are made with.
package_packages=(build-essential debhelper dpkg-dev fakeroot lintian)

say() { printf '== %s\n' "$*"; }
complain() { printf '%s: %s\n' "${0##*/}" "$*" >&2; }

as_root() {
    if [ "$(id -u)" = 0 ]; then
        "$@"
    elif ! command -v sudo >/dev/null; then
        complain "not root and no sudo to become root with"
        return 1
    elif [ -t 0 ]; then
        sudo "$@"
    else
        sudo -n "$@"
    fi
}

# missing_packages PACKAGE...: prints those that are not installed, one a line.
missing_packages() {
    local package
    for package in "$@"; do
        # shellcheck disable=SC2016 # the braces are dpkg-query's
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] ||
            printf '%s\n' "$package"
    done
}

# install_missing PURPOSE PACKAGE...: installs what is not there yet and nothing else. The lists
# are fetched only when they know nothing of a package or prove too old.
install_missing() {
    local purpose=$1 missing
    shift
    mapfile -t missing < <(missing_packages "$@")
    [ ${#missing[@]} -gt 0 ] || return 0
    say "installing for $purpose: ${missing[*]}"
    if command -v apt-get >/dev/null &&
        { apt_knows "${missing[@]}" || as_root apt-get -q update; } &&
        { apt_install "${missing[@]}" ||
            { as_root apt-get -q update && apt_install "${missing[@]}"; }; }; then
        return 0
    fi
    complain "missing for $purpose and not installable here; install by hand: ${missing[*]}"
    return 1
}

# needs LANE: installs what a lane of scripts/test needs.
needs() {
    local packages=("${build_packages[@]}" "${test_packages[@]}")
    case $1 in
        style*) packages+=("${style_packages[@]}" "${manual_packages[@]}") ;;
        as-released) packages+=("${desktop_packages[@]}" "${manual_packages[@]}" "${memory_packages[@]}") ;;
        unit | gui | gui-full) packages+=("${desktop_packages[@]}" "${manual_packages[@]}" "${clang_packages[@]}") ;;
        *-asan) packages+=("${desktop_packages[@]}" "${manual_packages[@]}" "${clang_packages[@]}" "${browser_packages[@]}") ;;
        demo) packages+=("${desktop_packages[@]}") ;;
        screenshots) packages+=("${desktop_packages[@]}") ;;
        kernel*) packages+=("${desktop_packages[@]}" "${kernel_packages[@]}") ;;
        coverage) packages+=("${desktop_packages[@]}" "${manual_packages[@]}" "${coverage_packages[@]}") ;;
        fuzz* | sanitize) packages+=("${clang_packages[@]}") ;;
        package) packages+=("${root_packages[@]}" "${boot_packages[@]}") ;;
        debian13) packages=("${root_packages[@]}") ;;
    esac
    install_missing "the lane $1" "${packages[@]}"
}

apt_knows() {
    local package
    for package in "$@"; do
        apt-cache show "$package" >/dev/null 2>&1 || return 1
    done
}

apt_install() {
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get -q -y --no-install-recommends -o Dpkg::Use-Pty=0 install "$@" </dev/null
}

# build PRESET [TARGET...]: configures and builds; what the tools say goes to
# build/logs/build-PRESET.log and comes out here only if they fail.
build() {
    local preset=$1 log=$project/build/logs/build-$1.log code=0
    shift
    say "building preset $preset${1:+ ($*)}"
    mkdir -p "$project/build/logs"
    if [ -z "${CMAKE_CXX_COMPILER_LAUNCHER:-}" ] && command -v ccache >/dev/null; then
        export CMAKE_CXX_COMPILER_LAUNCHER=ccache
    fi
    (cd "$project" && cmake --preset "$preset" &&
        cmake --build --preset "$preset" ${1:+--target "$@"}) </dev/null >"$log" 2>&1 || code=$?
    [ $code = 0 ] || { tail -n 60 "$log"; complain "preset $preset does not build; all of it is in $log"; }
    return $code
}
