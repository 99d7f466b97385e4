#!/usr/bin/env bash
# Compiles for macOS, on either processor, all that the program is made of, and links what needs no Qt, tests included.
# Nothing of it is run. What Qt's tools generate is taken from the ordinary build, so ./test comes first.
set -euo pipefail
cd "$(dirname "$0")/../.."

PELMARIX_ZIG=$(scripts/mac/get_compiler.sh)
# Where the compiler keeps the C++ library that it builds for each processor.
ZIG_GLOBAL_CACHE_DIR=$PWD/build/mac/cache
ZIG_LOCAL_CACHE_DIR=$ZIG_GLOBAL_CACHE_DIR
export PELMARIX_ZIG ZIG_GLOBAL_CACHE_DIR ZIG_LOCAL_CACHE_DIR
qt_headers=$(qmake6 -query QT_INSTALL_HEADERS)

for processor in aarch64 x86_64; do
  build=build/mac/$processor
  mkdir -p "$build"
  cmake --preset mac -B "$build" -DPELMARIX_MAC_PROCESSOR="$processor" -DPELMARIX_QT_HEADERS="$qt_headers" >"$build/configure.log"
  ninja -C "$build" --quiet
  file "$build"/bin/lsbom "$build"/sample/pelmarix-sample "$build"/tests/posix_tests | grep -c 'Mach-O 64-bit .*executable' |
    grep -qx 3 || { echo "What was linked for $processor is no program of macOS" >&2; exit 1; }
  # QSettings takes preferences from the system by organization and application, not by a file's name.
  preferences=$build/qt/CMakeFiles/pelmarix_qt.dir/services/settings_user_defaults.cpp.o
  [ "$(grep -c _ZN9QSettingsC1ERK7QStringNS_6FormatE "$preferences")" = 0 ] ||
    { echo "The preferences on $processor are a file" >&2; exit 1; }
  echo "Compiled and linked for macOS on $processor"
done
