#!/bin/sh
# install_test.sh CMAKE BUILD_DIRECTORY C_COMPILER
# Installs a build, moves the installed tree, and builds and runs a C client against it, once by the
# CMake package and once by the pkg-config module.
set -eu
cmake=$1 build=$2 compiler=$3
here=$(dirname "$(realpath "$0")")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

"$cmake" --install "$build" --prefix "$work/installed" >/dev/null
mv installed moved # nothing may remember where it was put first

echo "== CMake package"
"$cmake" -S "$here/client" -B build -G Ninja -DCMAKE_C_COMPILER="$compiler" \
  -DCMAKE_PREFIX_PATH="$work/moved"
"$cmake" --build build
build/client

echo "== pkg-config module"
PKG_CONFIG_PATH=$(dirname "$(find moved -name qxe.pc)")
export PKG_CONFIG_PATH
# shellcheck disable=SC2046 # one word per flag
"$compiler" -std=c11 -Wall -Wextra -Wpedantic -Werror "$here/../api/c_client.c" -o client \
  $(pkg-config --cflags --libs 'qxe >= 1.0')
LD_LIBRARY_PATH=$(pkg-config --variable=libdir qxe) ./client
