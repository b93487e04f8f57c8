#!/usr/bin/env bash
# Installs the build into a scratch prefix and builds a tiny host program against that tree
# alone, once with find_package(Brinecast) and once with pkg-config; then runs both, and the
# installed command line on a per-litre example, whose density must come from the installed
# reference engine. A cross build (TOOLCHAIN_FILE given) builds the CMake host program with the
# same toolchain and runs every program under EMULATOR; its pkg-config check is skipped, as the
# .pc file is for hosts built by a native compiler of the build machine.
# Usage: installed-tree.sh BUILD_DIR SOURCE_DIR [CXX_FLAGS] [TOOLCHAIN_FILE EMULATOR]
set -euo pipefail
build=$1 source=$2 flags=${3:-} toolchain=${4:-} emulator=${5:-}
run=()
[ -n "$emulator" ] && run=("$emulator")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix

cmake --install "$build" --prefix "$prefix" >/dev/null
for header in Brinecast.h KorvaneError.h Export.h EngineAbi.h; do
  [ -f "$prefix/include/korvane/$header" ] || { echo "not installed: include/korvane/$header" >&2; exit 1; }
done
engine=$(find "$prefix" -name kvpvt64.dll | head -1)
[ -n "$engine" ] || { echo "the reference engine is not installed" >&2; exit 1; }

cmake -S "$source/tests/host/consumer" -B "$work/cmake-build" -DCMAKE_PREFIX_PATH="$prefix" \
      -DCMAKE_CXX_FLAGS="$flags" ${toolchain:+-DCMAKE_TOOLCHAIN_FILE="$toolchain"} \
      ${toolchain:+-DBrinecast_DIR="$prefix/lib/cmake/Brinecast"} >/dev/null
cmake --build "$work/cmake-build" >/dev/null
if [ -n "$toolchain" ]; then
  # A Windows host finds the library DLL on its PATH: the installed bin directory.
  WINEPATH="$prefix/bin" "${run[@]}" "$work/cmake-build/consumer.exe"
else
  "$work/cmake-build/consumer"
fi

report=$("${run[@]}" "$prefix/bin/brinecast${toolchain:+.exe}" speciate "$source/examples/north-sea-formation-water.json")
grep -q "computed by the engine library" <<<"$report" \
  || { echo "the installed brinecast did not find its engine:" >&2; echo "$report" >&2; exit 1; }

[ -n "$toolchain" ] && { echo "pkg-config host program skipped: cross build"; exit 0; }
pc=$(find "$prefix" -name brinecast.pc | head -1)
export PKG_CONFIG_PATH=$(dirname "$pc")
# shellcheck disable=SC2046
g++ -std=c++17 $flags -DBRINECAST_ENGINE_DIR="\"$(pkg-config --variable=enginedir brinecast)\"" \
    "$source/tests/host/consumer/consumer.cpp" -o "$work/pc-consumer" \
    $(pkg-config --cflags --libs brinecast) -Wl,-rpath,"$(pkg-config --variable=libdir brinecast)"
"$work/pc-consumer"
