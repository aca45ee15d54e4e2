#!/usr/bin/env bash
# Compares the messages in data/ with what an encoder that is not ours makes of the same content: npm's
# gtfs-realtime-bindings. tst_live_message reads them. Needs npm and its registry, and skips itself
# without them. --update stores the messages again.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
command -v npm > /dev/null || { echo "Skipped: npm is not installed"; exit 0; }
folder="$(mktemp -d)"
trap 'rm -rf "$folder"' EXIT
if ! npm install --prefix "$folder" --ignore-scripts --no-audit --no-fund \
    gtfs-realtime-bindings@1.1.1 > "$folder/log" 2>&1; then
    echo "Skipped: npm cannot install gtfs-realtime-bindings: $(tail -1 "$folder/log")"
    exit 0
fi
mkdir "$folder/messages"
NODE_PATH="$folder/node_modules" node encode.js "$folder/messages"
if [ "${1:-}" = --update ]; then
    cp "$folder"/messages/*.pb data/
fi
diff -r --exclude=.gitattributes "$folder/messages" data
echo "The messages are the same"
