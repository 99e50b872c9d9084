#!/usr/bin/env bash
# scripts/demo end to end on the engine: it exits 0, the front end received the real form's post data
# unescaped as the control stores it, and every picture it names exists and is no blank or one-colour image.
set -u
repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
out=$(TOV_DEMO_NO_BUILD=1 "$repo/scripts/demo" 2>&1)
status=$?
printf '%s\n' "$out"
failures=0
fail() { echo "FAILED: $*"; failures=$((failures + 1)); }
[ "$status" -eq 0 ] || fail "scripts/demo exited with $status"
grep -qF 'pURL1        "TOVEVENT:SUBMIT?form=order"' <<<"$out" || fail "no BeforeNavigate for the order form"
grep -qF '"customer=Müller %26 Söhne&city=Köln&item=Straße map, 1:50 000&note=100% + 5 %3D 105 €\r\ndeliver before Friday"' <<<"$out" \
  || fail "the order form's post data is not in the front end's provider as sent"
grep -qF 'FrameName    "list"' <<<"$out" || fail "no event from the frame \"list\""
grep -qF 'strFCode     "FC_PRINT"' <<<"$out" || fail "the front end's menu choice did not come back"
grep -qF 'temporary files left: 0' <<<"$out" || fail "temporary files were left"
pictures=0
while read -r picture; do
  pictures=$((pictures + 1))
  if [ ! -s "$picture" ]; then fail "missing picture $picture"; continue; fi
  # 0 means the checker could not read the file: a checker that failed to start is asked again.
  for _ in 1 2 3; do
    colours=$("$repo/scripts/wine-run" "$repo/build/win/tovdemo.exe" --colours "$("$repo/scripts/wine-run" winepath -w "$picture" | tr -d '\r')" | tr -d '\r')
    [ "${colours:-0}" -gt 0 ] && break
  done
  [ "${colours:-0}" -ge 3 ] || fail "$picture shows ${colours:-no} colours: blank"
done < <(sed -n 's/^  screenshot: //p' <<<"$out")
[ "$pictures" -ge 8 ] || fail "only $pictures pictures named"
echo "demo test: $pictures pictures checked, $failures failures"
[ "$failures" -eq 0 ]
