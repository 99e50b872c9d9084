#!/usr/bin/env bash
# Registers the OCX in the test prefix, runs a client of it and checks that the client exits 0 and prints
# its success line last: "SCRIPT-OK" for a script run under cscript, "EXAMPLE-OK" for a Windows program.
# Wine's cscript exits 0 even on a script error, so a script proves success by that line.
set -u
ocx=$1; client=$2; shift 2
here=$(cd "$(dirname "$0")" && pwd)
run="$here/../../scripts/wine-run"
winpath() { "$run" winepath -w "$1" 2>/dev/null | tr -d '\r'; }
case "$client" in
  *.vbs|*.js) ok=SCRIPT-OK; command=(cscript //nologo "$(winpath "$client")") ;;
  *) ok=EXAMPLE-OK; command=("$client") ;;
esac
winocx=$(winpath "$ocx")
"$run" regsvr32 /s "$winocx" || { echo "FAIL: regsvr32 $winocx"; exit 1; }
out=$("$run" "${command[@]}" "$@" 2>&1); rc=$?
"$run" regsvr32 /s /u "$winocx"
out=$(printf '%s\n' "$out" | tr -d '\r')
printf '%s\n' "$out"
[ "$rc" -eq 0 ] || { echo "FAIL: exit code $rc"; exit 1; }
[ "$(printf '%s\n' "$out" | tail -n 1)" = "$ok" ] || { echo "FAIL: the client did not finish"; exit 1; }
echo PASS
