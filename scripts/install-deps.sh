#!/usr/bin/env bash
# Installs the Debian packages that a job needs and that are missing; does nothing when all are there.
#
#   scripts/install-deps.sh build [lint] [fuzz] [bench] [coverage]
set -euo pipefail

packages=()
for job in "$@"; do
  case "$job" in
    build) packages+=(g++ cmake ninja-build ccache rapidjson-dev libboost-dev libcli11-dev libgtest-dev libgmock-dev
      libexpat1-dev) ;;
    lint) packages+=(clang-format clang-tidy) ;;
    fuzz) packages+=(clang libclang-rt-dev llvm) ;;
    bench) packages+=(libassimp-dev libbenchmark-dev libsqlite3-dev) ;;
    coverage) packages+=(gcovr) ;;
    *)
      echo "install-deps.sh: no such job: $job" >&2
      exit 2
      ;;
  esac
done

if ! command -v dpkg >/dev/null; then
  echo "install-deps.sh: not a Debian system; needed are: ${packages[*]}" >&2
  exit 0
fi

missing=()
for package in "${packages[@]}"; do
  if ! dpkg -s "$package" 2>/dev/null | grep -q '^Status: install ok installed'; then
    missing+=("$package")
  fi
done
if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

if [ "$(id -u)" -ne 0 ]; then
  echo "install-deps.sh: run this as root first: apt-get install ${missing[*]}" >&2
  exit 1
fi
export DEBIAN_FRONTEND=noninteractive
apt-get update -q
apt-get install -q -y --no-install-recommends "${missing[@]}"
