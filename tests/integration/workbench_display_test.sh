#!/usr/bin/env bash
# The workbench on a display of its own that goes away under it: the program ends instead of hanging, and
# the engine it started does not outlive it.
set -u
repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
run="$repo/scripts/wine-run"
fail() { echo "FAIL: $*"; cleanup; exit 1; }
pages=$(mktemp -d /tmp/tov-workbench-XXXXXX)
out="$pages.out"
cleanup() { [ -n "${xvfb:-}" ] && kill "$xvfb" 2>/dev/null; rm -rf "$pages" "$out"; }
printf '<html><body><a href="TOVEVENT:X">x</a></body></html>' >"$pages/index.htm"

display=$(( 600 + $$ % 300 ))
while [ -e "/tmp/.X11-unix/X$display" ]; do display=$((display + 1)); done
Xvfb ":$display" -screen 0 1024x768x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
for _ in $(seq 50); do [ -e "/tmp/.X11-unix/X$display" ] && break; sleep 0.1; done

DISPLAY=":$display" "$run" explorer "/desktop=TOVWorkbenchTest$display,900x700" \
  "$("$run" winepath -w "$repo/build/win/tovdemo.exe" | tr -d '\r')" \
  --pages "$("$run" winepath -w "$pages" | tr -d '\r')" >"$out" 2>&1 &
for _ in $(seq 600); do grep -q "workbench: ready" "$out" && break; sleep 0.1; done
cat "$out"
grep -q "workbench: ready" "$out" || fail "the workbench did not get ready"
pid=$(sed -n 's/.*(process \([0-9]*\)).*/\1/p' "$out" | head -n 1)
[ -n "$pid" ] || fail "no process number printed"
ls -d /tmp/tovengine-"$pid"-* >/dev/null 2>&1 || fail "no engine folder for process $pid"

kill "$xvfb"; wait "$xvfb" 2>/dev/null; xvfb=""
ended=0
for _ in $(seq 300); do
  if ! pgrep -f "tovdemo.exe --pages .*$(basename "$pages")" >/dev/null; then ended=1; break; fi
  sleep 0.1
done
[ "$ended" -eq 1 ] || fail "the workbench still runs 30 s after its display went away"
gone=0
for _ in $(seq 45); do
  if ! ls -d /tmp/tovengine-"$pid"-* >/dev/null 2>&1; then gone=1; break; fi
  sleep 1
done
[ "$gone" -eq 1 ] || fail "the engine of process $pid outlived the workbench"
echo "PASS: the workbench ended with its display and its engine followed"
cleanup
