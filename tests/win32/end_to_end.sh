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

# The game runs in real time under watch and in the scenario's time under
# replay, so the dates in file names and time stamps differ; everything else
# must be the same: the printed deals, each record file's bytes (in filing
# order), and the other files apart from their time-stamp line.
status=0
strip_names() { sed -e 's/"file": "[^"]*"//' "$1" | head -n 3; }
if ! diff <(strip_names "$out/replay.jsonl") <(strip_names "$out/watch.jsonl") > "$out/lines.diff"; then
  echo "watch printed other deals than replay:"; head -n 20 "$out/lines.diff"; status=1
fi
mapfile -t want < <(cd "$out/replay/Work" && ls -1 -- *.spd | sort)
mapfile -t got < <(cd "$out/watch/Work" && ls -1 -- *.spd | sort)
if [ "${#want[@]}" -ne "${#got[@]}" ]; then
  echo "watch filed ${#got[@]} records, replay ${#want[@]}"; status=1
else
  for i in "${!want[@]}"; do
    cmp -s "$out/replay/Work/${want[$i]}" "$out/watch/Work/${got[$i]}" ||
      { echo "record ${got[$i]} differs from replay's ${want[$i]}"; status=1; }
  done
fi
for f in "$out"/replay/Work/*.TXT; do
  [ -e "$f" ] || continue
  name=$(basename "$f")
  if ! cmp -s <(tail -n +2 "$f") <(tail -n +2 "$out/watch/Work/$name" 2>/dev/null); then
    echo "$name differs from replay's"; status=1
  fi
done
[ "$status" -eq 0 ] && echo "Win32 end to end: watch filed what replay files (3 deals)"
exit "$status"
