#!/usr/bin/env bash
# Brings the translations up to date with the words in the sources: scripts/words.sh [LANGUAGE...]
# A LANGUAGE such as `de` begins a file of its own. The English file has the plural forms only.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

update() { /usr/lib/qt6/bin/lupdate Varnet -I . -I Varnet/models -I Varnet/shell -no-obsolete -locations none -source-language en "$@"; }

update -pluralonly -target-language en_US -ts i18n/varnet_en.ts
for language in "$@"; do
    [ -e "i18n/varnet_$language.ts" ] || update -target-language "$language" -ts "i18n/varnet_$language.ts"
done
for file in i18n/varnet_*.ts; do
    [ "$file" = i18n/varnet_en.ts ] || update -ts "$file"
done
