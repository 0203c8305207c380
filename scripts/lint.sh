#!/usr/bin/env bash
# Runs clang-tidy over every source file of a configured build folder, several at a time. Headers of the
# project are checked through the files that include them.
#
#   scripts/lint.sh BUILD_FOLDER [JOBS]
set -euo pipefail

build=$1
jobs=${2:-$(nproc)}
# Sources as the build names them: what is generated or not compiled on this platform is left out.
sed -nE 's/^ *"file": "(.*)",?$/\1/p' "$build/compile_commands.json" | sort -u |
  xargs -r -P "$jobs" -n 1 clang-tidy -p "$build" --quiet 2>&1 |
  sed '/warnings generated\.$/d'
echo "lint: clean"
