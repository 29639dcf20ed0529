#!/usr/bin/env bash
# Brings the translations up to date with the words in the sources: scripts/words.sh [--check | LANGUAGE...]
# A LANGUAGE such as `de` begins a file of its own. The English file has the plural forms only. --check changes nothing,
# and fails if the English file lacks a plural, has one too many, or one without its forms.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
english=i18n/varnet_en.ts

update() {
    /usr/lib/qt6/bin/lupdate Varnet -I . -I Varnet/models -I Varnet/shell -no-obsolete -locations none \
        -source-language en "$@" >/dev/null 2>&1
}

if [ "${1:-}" = --check ]; then
    fresh=$(mktemp --suffix=.ts)
    trap 'rm -f "$fresh"' EXIT
    cp "$english" "$fresh"
    update -pluralonly -ts "$fresh"
    diff -u "$english" "$fresh" >&2 || { echo "words: run ./dev words and write the forms of each plural" >&2 && exit 1; }
    grep -B4 'type="unfinished"' "$english" >&2 && exit 1
    exit 0
fi

update -pluralonly -target-language en_US -ts "$english"
for language in "$@"; do
    [ -e "i18n/varnet_$language.ts" ] || update -target-language "$language" -ts "i18n/varnet_$language.ts"
done
for file in i18n/varnet_*.ts; do
    [ "$file" = "$english" ] || update -ts "$file"
done
