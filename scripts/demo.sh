#!/usr/bin/env bash
# Records the demonstration dialogue through the real window, into build/demo. `scripts/demo.sh BUILD`, after a build.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
exec tests/support/private-session --pipewire --display -- scripts/demo.py "$1" build/demo
