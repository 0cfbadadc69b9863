#!/usr/bin/env bash
# usage: run.sh BUILD_DIR WORK_DIR
# Installs the build into WORK_DIR/prefix, then builds and runs the consumer
# programs (C and C++) twice: through find_package(zeqcv CONFIG) and through
# pkg-config.
set -euo pipefail
build=$1 work=$2
here=$(cd "$(dirname "$0")" && pwd)
rm -rf "$work"
mkdir -p "$work"
prefix=$work/prefix
cmake --install "$build" --prefix "$prefix" >/dev/null

echo "== find_package(zeqcv CONFIG REQUIRED)"
cmake -S "$here" -B "$work/cmake" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build "$work/cmake" >/dev/null
"$work/cmake/consumer_c"
"$work/cmake/consumer_cxx"

echo "== pkg-config --cflags --libs zeqcv"
export PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name zeqcv.pc)")
flags=$(pkg-config --cflags --libs zeqcv)
rpath=-Wl,-rpath,$(pkg-config --variable=libdir zeqcv)
cc -std=c99 -Wall -Wextra -pedantic -Werror "$here/main.c" -o "$work/pc_c" $flags "$rpath"
c++ -std=c++17 -Wall -Wextra -pedantic -Werror "$here/main.cpp" -o "$work/pc_cxx" $flags "$rpath"
c++ -std=c++17 -Wall -Wextra -pedantic -Werror -x c++ "$here/main.c" -o "$work/pc_c_as_cxx" $flags "$rpath"
"$work/pc_c"
"$work/pc_cxx"
"$work/pc_c_as_cxx"

echo "== the installed tool"
"$prefix/bin/zeqcv" version 2>/dev/null || echo "(no tool installed)"
