#!/usr/bin/env bash
# The shipped control under build/dist: small, without debug information, with its type library and
# interface header beside it; regsvr32 registers it and a script client creates it by both ProgIDs.
set -u
dist=$1
here=$(cd "$(dirname "$0")" && pwd)
fail() { echo "FAIL: $*"; exit 1; }
for f in TOVHTML.OCX TOVHTML.tlb TOVHTML_h.h TOVHTML_i.c; do [ -s "$dist/$f" ] || fail "$dist/$f is missing"; done
size=$(stat -c %s "$dist/TOVHTML.OCX")
echo "shipped TOVHTML.OCX: $size bytes"
[ "$size" -lt 3000000 ] || fail "the shipped binary is $size bytes: not stripped?"
if x86_64-w64-mingw32-objdump -h "$dist/TOVHTML.OCX" | grep -q '\.debug'; then fail "debug sections in the shipped binary"; fi
grep -q 'ITOVHTMLControl' "$dist/TOVHTML_h.h" || fail "the header does not declare ITOVHTMLControl"
exec "$here/run_registered.sh" "$dist/TOVHTML.OCX" "$here/create_by_progid.vbs"
