#!/usr/bin/env bash
# The long soak: 1000 (or $1) control lives in a real container, checking that handles, GDI and USER
# objects, windows, temporary files and module references come back. The test suite runs a short one.
set -euo pipefail
repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$repo/build/win"
TOV_SOAK_CYCLES=${1:-1000} "$repo/scripts/wine-run" ./control_tests.exe --gtest_filter='WholeLife.ManyLives*' | tr -d '\r'
