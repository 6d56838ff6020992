#!/usr/bin/env bash
# check.sh PREFIX FOLDER: builds and runs the outside project against the copy installed at PREFIX, by both roads.
set -euo pipefail
prefix=$(realpath "$1")
mkdir -p "$2"
folder=$(realpath "$2")
here=$(dirname "$0")

libraries=$(dirname "$(find "$prefix" -name libHBXFunctionalityCore.so)")
export PKG_CONFIG_PATH=$libraries/pkgconfig
[ "$(pkg-config --variable=includedir HBXFunctionalityCore)" -ef "$prefix/include" ]
"$here/build.sh" "$folder/by_pkg_config"
LD_LIBRARY_PATH=$libraries "$folder/by_pkg_config"

cmake -S "$here" -B "$folder/cmake" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
grep -q "HBXFunctionalityCore_DIR:PATH=$prefix/" "$folder/cmake/CMakeCache.txt"
cmake --build "$folder/cmake" >/dev/null
"$folder/cmake/consumer"

"$prefix/bin/hbx" --help >/dev/null
