#!/usr/bin/env bash
# The single list of packages. `scripts/setup.sh GROUP...` installs what is missing of the named groups:
# build, run, test, screens, lint, bench, package. As root or with sudo, on Debian 12.
set -euo pipefail

declare -A groups=(
    [build]="clang-19 libclang-rt-19-dev lld-19 cmake ninja-build pkg-config ccache git
        qt6-base-dev qt6-base-dev-tools qt6-declarative-dev qt6-declarative-dev-tools qt6-websockets-dev
        qt6-svg-dev qt6-tools-dev qt6-l10n-tools librsvg2-bin qcoro-qt6-dev libgl-dev libegl-dev
        libpipewire-0.3-dev libspa-0.2-dev libavformat-dev libavcodec-dev libswresample-dev libavutil-dev
        libsoundtouch-dev libxcb1-dev
        libicu-dev libssl-dev libsimdjson-dev libpocketsphinx-dev libsphinxbase-dev"
    [run]="qml6-module-qtquick qml6-module-qtquick-controls qml6-module-qtquick-layouts
        qml6-module-qtquick-window qml6-module-qtquick-templates qml6-module-qtqml qml6-module-qtqml-models
        qml6-module-qtqml-workerscript qml6-module-qtquick-shapes qml6-module-qtcore qml6-module-qtquick-dialogs
        qml6-module-qt-labs-folderlistmodel libqt6svg6 qt6-qpa-plugins qt6-xdgdesktopportal-platformtheme
        libgl1-mesa-dri fonts-dejavu-core pipewire wireplumber dbus pocketsphinx-en-us"
    [test]="libgtest-dev libgmock-dev xvfb xauth xdotool x11-utils pipewire-bin flite sox ffmpeg
        libglib2.0-bin iproute2 util-linux procps python3 python3-dbus python3-gi python3-dbusmock
        at-spi2-core python3-pyatspi"
    [screens]="fonts-noto-cjk fonts-noto-color-emoji"
    [lint]="clang-tidy-19 clang-format-19 shellcheck python3 desktop-file-utils appstream"
    [bench]="libsoxr-dev nlohmann-json3-dev ffmpeg"
    [package]="dpkg-dev file"
)

wanted=()
for group in "$@"; do
    [ -n "${groups[$group]:-}" ] || { echo "setup: no group of packages is called '$group'" >&2 && exit 2; }
    read -r -d '' -a names <<<"${groups[$group]}" || true
    wanted+=("${names[@]}")
done

missing=()
for package in $(printf '%s\n' "${wanted[@]}" | sort -u); do
    dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

if ! command -v apt-get >/dev/null; then
    echo "setup: these Debian packages are missing, and there is no apt-get here: ${missing[*]}" >&2
    exit 1
fi
as_root=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "setup: run as root, or install sudo, to install: ${missing[*]}" >&2 && exit 1; }
    as_root=(sudo)
fi
echo "Installing ${#missing[@]} packages"
log=$(mktemp)
if ! { "${as_root[@]}" apt-get update -qq &&
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -qq -y --no-install-recommends "${missing[@]}"; } \
    >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    exit 1
fi
rm -f "$log"
