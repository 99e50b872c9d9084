#!/usr/bin/env bash
# The OCX may import system DLLs only: nothing of the mingw runtime travels with it.
set -u
ocx=$1
allowed='^(kernel32|user32|gdi32|advapi32|ole32|oleaut32|shell32|shlwapi|wininet|atl|msvcrt)\.dll$'
dlls=$(x86_64-w64-mingw32-objdump -p "$ocx" | sed -n 's/^\s*DLL Name: //p' | tr 'A-Z' 'a-z' | sort -u)
[ -n "$dlls" ] || { echo "FAIL: no import table read from $ocx"; exit 1; }
bad=$(printf '%s\n' "$dlls" | grep -vE "$allowed")
echo "imports: $(echo $dlls)"
if [ -n "$bad" ]; then echo "FAIL: non-system imports: $bad"; exit 1; fi
echo "PASS"
