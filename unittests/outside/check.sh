#!/usr/bin/env bash
# Installs a build into an empty prefix and uses it as an outside project does: by CMake, by pkg-config, by program.
# Usage: check.sh BUILD_DIRECTORY
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$1" --prefix "$work/prefix" >/dev/null

cmake -S "$here" -B "$work/build" -DCMAKE_PREFIX_PATH="$work/prefix" -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build "$work/build"
"$work/build/outside"

pkgconfig=$(dirname "$(find "$work/prefix" -name zelkova.pc)")
export PKG_CONFIG_PATH=$pkgconfig
# shellcheck disable=SC2046
g++ -std=c++20 "$here/main.cpp" -o "$work/outside" $(pkg-config --cflags --libs zelkova)
"$work/outside"

"$work/prefix/bin/zelkova" list
