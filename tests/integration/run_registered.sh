#!/usr/bin/env bash
# Registers the OCX in the test prefix, runs a Windows program that uses it and checks that the program
# exits 0 and prints "EXAMPLE-OK" last.
set -u
ocx=$1; exe=$2; shift 2
here=$(cd "$(dirname "$0")" && pwd)
run="$here/../../scripts/wine-run"
winocx=$("$run" winepath -w "$ocx" 2>/dev/null | tr -d '\r')
"$run" regsvr32 /s "$winocx" || { echo "FAIL: regsvr32 $winocx"; exit 1; }
out=$("$run" "$exe" "$@" 2>&1 | tr -d '\r'); rc=${PIPESTATUS[0]}
"$run" regsvr32 /s /u "$winocx"
printf '%s\n' "$out"
[ "$rc" -eq 0 ] || { echo "FAIL: exit code $rc"; exit 1; }
[ "$(printf '%s\n' "$out" | tail -n 1)" = "EXAMPLE-OK" ] || { echo "FAIL: the program did not finish"; exit 1; }
echo PASS
