#!/usr/bin/env bash
# Checks of the sources that need no run of the program. `scripts/lint.sh BUILD`, after a build.
# shellcheck disable=SC2317 # step calls the functions by name
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit
build=$1
failed=0

step() { # NAME FUNCTION
    if "$2"; then echo "lint: $1: ok"; else
        echo "lint: $1: FAILED" >&2
        failed=1
    fi
}

check_layers() { scripts/check-layers.py; }

check_format() { git ls-files -z '*.cpp' '*.h' | xargs -0 clang-format-19 --dry-run -Werror; }

check_scripts() {
    { git ls-files '*.sh' && git grep -lI '^#!/usr/bin/env bash' -- . ':!*.sh'; } | sort -u | xargs shellcheck -x
}

# Colours, sizes and fonts stand in the theme only.
check_theme() {
    ! git grep -nE '"#[0-9a-fA-F]{3,8}"|font\.pixelSize: *[0-9]|font\.family: *"' -- '*.qml' ':!*Theme.qml'
}

check_qml() {
    local problems
    problems=$(git ls-files 'Varnet/screens/*.qml' | xargs -r /usr/lib/qt6/bin/qmllint -I "$build/Varnet" -I "$build" 2>&1)
    if grep -q '^Error\|Failed to parse' <<<"$problems"; then
        echo "$problems" >&2
        return 1
    fi
}

# Words that people see or hear go through qsTr.
check_words() {
    # shellcheck disable=SC2016 # Perl's variables
    git ls-files 'Varnet/screens/*.qml' | xargs -r perl -ne 's/qsTr\("(\\.|[^"\\])*"//g;
        if (/\b(text|title|detail|keys|name|nothing|message|question|explanation|firstAnswer|secondAnswer|action|placeholderText
                |acceptLabel|Accessible\.(name|description)|ToolTip\.text)\ *:(.*)/x) {
            for ($3 =~ /"((?:\\.|[^"\\])*)"/g) { if (/[A-Za-z]{2}/ && !/^[a-z]+$/) { print STDERR "$ARGV:$.: $_\n"; $bad = 1 } }
        }
        close ARGV if eof; END { exit !!$bad }'
}

check_plurals() { scripts/words.sh --check; }

check_desktop_entry() { ! desktop-file-validate packaging/*.desktop | grep .; }

# What software centres show is well formed, and says the same as the entry and the build.
check_metainfo() {
    local metainfo=packaging/org.varnet.Varnet.metainfo.xml report version
    version=$(sed -n 's/^project(Varnet VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt)
    report=$(appstreamcli validate --no-net --no-color "$metainfo") || { echo "$report" >&2 && return 1; }
    grep -q "<release version=\"$version\"" "$metainfo" || { echo "$metainfo: no release $version" >&2 && return 1; }
    diff <(sed -n 's/^MimeType=//p' packaging/org.varnet.Varnet.desktop | tr ';' '\n' | grep . | sort) \
        <(sed -n 's|.*<mediatype>\(.*\)</mediatype>.*|\1|p' "$metainfo" | sort)
}

check_lengths() {
    git ls-files 'Varnet/*.qml' | xargs -r wc -l |
        awk '$2 != "total" && $1 > 150 {print "over 150 lines: " $2; bad = 1} END {exit bad}'
}

check_tidy() {
    git ls-files 'MeetingCore/*.cpp' 'Varnet/*.cpp' 'engine/*.cpp' | xargs -P "$(nproc)" -n 4 clang-tidy-19 -p "$build" --quiet \
        2> >(grep -v 'warnings generated\|Suppressed\|Use -header-filter' >&2)
}

step "layers" check_layers
step "format" check_format
step "scripts" check_scripts
step "theme" check_theme
step "QML" check_qml
step "words" check_words
step "plurals" check_plurals
step "QML lengths" check_lengths
step "desktop entry" check_desktop_entry
step "metainfo" check_metainfo
step "clang-tidy" check_tidy
exit $failed
