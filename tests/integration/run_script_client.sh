#!/usr/bin/env bash
# Registers the OCX in the test prefix, runs a script client under cscript and checks its result.
# Wine's cscript exits 0 even on a script error, so a script proves success by printing "SCRIPT-OK" last
# and by its WScript.Quit code.
set -u
ocx=$1; script=$2; shift 2
here=$(cd "$(dirname "$0")" && pwd)
run="$here/../../scripts/wine-run"
winocx=$("$run" winepath -w "$ocx" 2>/dev/null | tr -d '\r')
winscript=$("$run" winepath -w "$script" 2>/dev/null | tr -d '\r')
"$run" regsvr32 /s "$winocx" || { echo "FAIL: regsvr32 $winocx"; exit 1; }
out=$("$run" cscript //nologo "$winscript" "$@" 2>&1 | tr -d '\r'); rc=$?
"$run" regsvr32 /s /u "$winocx"
printf '%s\n' "$out"
[ $rc -eq 0 ] || { echo "FAIL: cscript exit code $rc"; exit 1; }
[ "$(printf '%s\n' "$out" | tail -n 1)" = "SCRIPT-OK" ] || { echo "FAIL: script did not finish"; exit 1; }
echo PASS
