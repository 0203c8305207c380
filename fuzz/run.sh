#!/bin/sh
# Runs every fuzz target for some seconds, each on a copy of its seeds, and stops at the first finding.
#
#   fuzz/run.sh SECONDS [BUILD_FOLDER]
#
# One line for each target; status 0 when none found anything, 1 at a finding, 2 for wrong usage. Targets
# are configured and built first. A finding stays in BUILD_FOLDER/findings. CXX names another clang++.
set -eu

targets="beats bvh csv data_path gpx json kit manifest message_literal motion open scanner series series_lines
series_passes signature time_text tsv writer"

case "${1:-}" in
  '' | *[!0-9]* | 0)
    echo "usage: fuzz/run.sh SECONDS [BUILD_FOLDER]" >&2
    exit 2
    ;;
esac
seconds=$1
source=$(cd "$(dirname "$0")/.." && pwd)
build=${2:-$source/build-fuzz}
mkdir -p "$build/findings"
build=$(cd "$build" && pwd)

if [ ! -f "$build/CMakeCache.txt" ]; then
  cmake -S "$source" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_CXX_COMPILER="${CXX:-clang++-14}" -DBUILD_TESTING=OFF -DSENMARK_BUILD_TOOL=OFF \
    -DSENMARK_BUILD_FUZZ=ON >/dev/null
fi
# shellcheck disable=SC2086 # a list of words
built=$(printf '%s_fuzzer ' $targets)
# shellcheck disable=SC2086 # a list of words
cmake --build "$build" --target $built >"$build/fuzz-build.log" 2>&1 || {
  cat "$build/fuzz-build.log" >&2
  exit 1
}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
trap 'exit 1' INT TERM

export UBSAN_OPTIONS="print_stacktrace=1:${UBSAN_OPTIONS:-}"
for fuzzer in $built; do
  target=${fuzzer%_fuzzer}
  mkdir -p "$work/$target" "$work/temporary"
  if [ -d "$source/fuzz/corpus/$target" ]; then
    cp -R "$source/fuzz/corpus/$target/." "$work/$target"
  fi
  log="$build/findings/$target.log"
  # Temporary files of the library and of the targets go where they are swept up; what a target leaves would be seen.
  if TEMP="$work/temporary/" TMPDIR="$work/temporary" "$build/fuzz/$fuzzer" -max_total_time="$seconds" -timeout=25 -rss_limit_mb=2048 \
    -print_final_stats=1 -artifact_prefix="$build/findings/$target-" "$work/$target" >"$log" 2>&1; then
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    coverage=$(sed -n 's/^#.* cov: \([0-9]*\) .*/\1/p' "$log" | tail -n 1)
    printf '%-16s %4s s %10s runs, %5s edges: no finding\n' "$target" "$seconds" "$runs" "$coverage"
  else
    tail -n 40 "$log" >&2
    printf '%-16s FINDING, see %s\n' "$target" "$log"
    exit 1
  fi
  if [ -n "$(ls -A "$work/temporary")" ]; then
    printf '%-16s FINDING, temporary files left behind\n' "$target"
    exit 1
  fi
done
