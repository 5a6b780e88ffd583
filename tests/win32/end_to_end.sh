#!/usr/bin/env bash
# The companion on a real Windows desktop (under Wine): tarvellos-game.exe
# plays a three-deal game as real windows, tarvellos-cli.exe watch follows it
# for three deals, and what watch filed and printed must be what replay files
# and prints for the same game. Runs inside the Wine and X environment that
# scripts/test-windows sets up. Usage: end_to_end.sh BUILD_DIR OUT_DIR
set -euo pipefail
build=$1
out=$2
here=$(cd "$(dirname "$0")" && pwd)
scenario=$here/../data/win32/three_deals.json
cli=$build/tarvellos-cli.exe
game=$build/tarvellos-game.exe
speed=${GAME_SPEED:-4}

if ! wine "$cli" watch --help >/dev/null 2>&1; then
  echo "SKIPPED: Win32 end to end: this tarvellos-cli.exe has no watch command yet"
  exit 0
fi

rm -rf "$out"
mkdir -p "$out/replay" "$out/watch"
wine "$cli" replay "$scenario" --out "$out/replay" > "$out/replay.jsonl"
# watch starts from the same settings and alert list as the replay.
cp "$out/replay/TarvelloS.INI" "$out/watch/"
[ -f "$out/replay/Alert.TXT" ] && cp "$out/replay/Alert.TXT" "$out/watch/"

wine "$game" --scenario "$scenario" --speed "$speed" > "$out/game.log" 2>&1 &
game_pid=$!
trap 'kill "$game_pid" 2>/dev/null || true' EXIT
# The table is up when the game says so (a time limit, not a fixed sleep).
for _ in $(seq 1 600); do
  grep -q 'table open' "$out/game.log" 2>/dev/null && break
  kill -0 "$game_pid" 2>/dev/null || { echo "tarvellos-game.exe ended early:"; cat "$out/game.log"; exit 1; }
  sleep 0.1
done
grep -q 'table open' "$out/game.log" || { echo "tarvellos-game.exe opened no table within 60 s"; exit 1; }

wine "$cli" watch --home "$out/watch" --deals 3 --timeout 900 --json > "$out/watch.jsonl"

status=0
if ! diff <(head -n 3 "$out/replay.jsonl") <(head -n 3 "$out/watch.jsonl") > "$out/lines.diff"; then
  echo "watch printed other deals than replay:"; cat "$out/lines.diff"; status=1
fi
if ! diff -r "$out/replay/Work" "$out/watch/Work" > "$out/files.diff"; then
  echo "watch filed other files than replay:"; head -n 40 "$out/files.diff"; status=1
fi
[ "$status" -eq 0 ] && echo "Win32 end to end: watch filed what replay files (3 deals)"
exit "$status"
