#!/usr/bin/env bash
# Starts the notes engine by hand, with the command line of the application, and stays until Ctrl+C:
#
#     start-notes.sh [FOLDER] [--model FILE]
#
# FOLDER holds the files of the engines: by default $VARNET_RUNTIME, else the RuntimeRoot of the settings. A program that
# is not there is looked for on the PATH, a model that is not there in the application's own folder for it.
#
# Exit status: that of the server; 1 when it was not started, 2 for a wrong use.
set -euo pipefail

port=17864
model_name=Qwen3.5-4B-Q4_K_M.gguf
model_bytes=2741986464
program_place=.runtime/notes/runtime/llama-b11146/llama-server
model_place=.runtime/notes/$model_name

say() {
    printf 'start-notes: %s\n' "$1" >&2
    shift
    [ $# -eq 0 ] || printf '%s\n' "$@" >&2
}

fail() {
    say "$@"
    exit 1
}

misuse() {
    say "$1; see --help"
    exit 2
}

# base VALUE BELOW_HOME: a base folder of the desktop; its variable counts only when it holds an absolute path.
base() { if [[ $1 == /* ]]; then printf '%s' "$1"; else printf '%s' "$HOME/$2"; fi; }

stored_folder() {
    local folders folder file
    IFS=: read -ra folders <<<"$(base "${XDG_CONFIG_HOME:-}" .config):${XDG_CONFIG_DIRS:-/etc/xdg}"
    for folder in "${folders[@]}"; do
        file=$folder/Varnet/Varnet.conf
        if grep -qs '^RuntimeRoot=' "$file"; then
            sed -n '/^\[General\]/,/^\[/ { s/^RuntimeRoot=//; T; s/^"\(.*\)"$/\1/; s/\\\(.\)/\1/g; p; q }' "$file"
            return
        fi
    done
}

listens() { (: <"/dev/tcp/127.0.0.1/$port") 2>/dev/null; }

answers_health() {
    local status
    status=$(exec 2>/dev/null 3<>"/dev/tcp/127.0.0.1/$port" &&
        printf 'GET /health HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\n\r\n' >&3 &&
        IFS= read -r -t 2 status <&3 && printf '%s' "$status") && [[ $status == HTTP/1.?' 200'* ]]
}

# Written beside its place and moved there, so that a reader never finds half a key.
make_key() (
    key_file=$1
    [ ! -e "$key_file" ] || exit 0
    umask 077
    mkdir -p "$(dirname "$key_file")"
    fresh=$(mktemp "$key_file.XXXXXX")
    { head -c 32 /dev/urandom | base64 | tr '+/' '-_' | tr -d '=\n' && echo; } >"$fresh"
    mv -n "$fresh" "$key_file"
    rm -f "$fresh" # the application was first
)

named_folder='' model=''
while [ $# -gt 0 ]; do
    case $1 in
    -h | --help)
        sed -n '2,/^set/ s/^# \{0,1\}//p' "${BASH_SOURCE[0]}"
        exit
        ;;
    --model)
        [ $# -gt 1 ] || misuse "--model needs a file"
        model=$2
        shift
        ;;
    -*) misuse "there is no option $1" ;;
    *)
        [ -z "$named_folder" ] || misuse "only one folder can be named"
        named_folder=$1
        ;;
    esac
    shift
done

if listens; then
    answers_health && fail "a server on 127.0.0.1:$port answers /health already; the application uses it as it is."
    fail "something listens on 127.0.0.1:$port already, but does not answer /health. End it first."
fi

folder=${named_folder:-${VARNET_RUNTIME-$(stored_folder)}}
if [ -n "$folder" ]; then
    [ -d "$folder" ] || fail "there is no folder $folder"
    folder=$(cd "$folder" && pwd)
fi
data=$(base "${XDG_DATA_HOME:-}" .local/share)/Varnet
missing=0

program=$folder/$program_place
if [ -z "$folder" ] || [ ! -f "$program" ] || [ ! -x "$program" ]; then
    program=$(type -P llama-server || true)
fi
if [ -z "$program" ]; then
    missing=1
    place=${folder:-FOLDER}/$program_place
    say "the program llama-server is missing (llama.cpp, build b11146 or later). It goes, with its libraries beside it, to" \
        "    $place" "or onto the PATH."
    [ ! -e "$place" ] || say "A file is there, but it cannot be executed: chmod +x \"$place\""
fi

if [ -n "$model" ]; then
    [ -f "$model" ] || fail "there is no model file $model"
elif [ -n "$folder" ] && [ -f "$folder/$model_place" ]; then
    model=$folder/$model_place
elif [ -f "$data/notes-model/$model_name" ]; then
    model=$data/notes-model/$model_name
else
    missing=1
    say "the model file $model_name ($model_bytes bytes) is missing. It goes to" \
        "    ${folder:-FOLDER}/$model_place" "or is named with --model FILE."
fi
if [ $missing -ne 0 ]; then
    [ -n "$folder" ] || say "FOLDER is any folder of yours: name it here, in VARNET_RUNTIME, or as RuntimeRoot in the settings."
    exit 1
fi
bytes=$(stat -Lc %s "$model")
[ "$bytes" -eq $model_bytes ] || say "$model has $bytes bytes instead of $model_bytes: another model, or a part of it. Trying it."

key_file=$data/notes-service.key
make_key "$key_file"

say "$program, model $model, on 127.0.0.1:$port. Ctrl+C ends it."
exec "$program" \
    --model "$model" \
    --alias qwen3.5-4b-q4km \
    --host 127.0.0.1 \
    --port $port \
    --ctx-size 8192 \
    --parallel 1 \
    --threads 4 \
    --batch-size 256 \
    --ubatch-size 128 \
    --jinja \
    --reasoning off \
    --no-context-shift \
    --api-key-file "$key_file"
