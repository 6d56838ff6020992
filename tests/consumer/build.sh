#!/bin/sh -e
# build.sh PROGRAM: the same project without CMake. PKG_CONFIG_PATH says where the installed copy is.
cd "$(dirname "$0")"
"${CXX:-c++}" -std=c++20 main.cpp -o "$1" $(pkg-config --cflags --libs HBXFunctionalityCore)
