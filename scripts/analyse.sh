#!/usr/bin/env bash
# Static analysis of the sources: clang-tidy (.clang-tidy says what it looks for) over the units that
# the presets core and win32 compile, the product's as for its own system, and cppcheck over the
# rules. Both presets are configured already. Any finding fails.
set -euo pipefail
cd "$(dirname "$0")/.."

mapfile -t mingw < <(i686-w64-mingw32-g++-posix -xc++ -E -v /dev/null 2>&1 |
  sed -n 's/^ \(\/.*\)$/-isystem\n\1/p')
windows=(--target=i686-w64-mingw32 -nostdinc -nostdinc++
  -isystem "$(clang -print-resource-dir)/include" "${mingw[@]}"
  -include scripts/analysis/missing.h -DWINVER=0x0601 -D_WIN32_WINNT=0x0601 -DWIN32_LEAN_AND_MEAN
  -DNOMINMAX -DSTRICT -DUNICODE -D_UNICODE -DZEF_INTERFACE_VERSION=0)

# Tidy UNITS FLAG...
Tidy() {
  local units=$1
  shift
  compgen -G "$units" >/dev/null || { echo "nothing to analyse: $units"; return 1; }
  compgen -G "$units" | xargs -P "$(nproc)" -I{} clang-tidy --quiet {} -- \
    -std=c++20 -Isrc -Iinclude "$@" 2>/dev/null
}

status=0
Tidy 'build/core/CMakeFiles/zef_rules.dir/Unity/*.cxx' || status=1
Tidy 'build/win32/CMakeFiles/zefext_[oe]*.dir/Unity/*.cxx' "${windows[@]}" || status=1
cppcheck --quiet --std=c++20 --language=c++ --error-exitcode=1 -j "$(nproc)" -Isrc -Iinclude \
  --enable=warning,style,performance,portability \
  --suppressions-list=scripts/analysis/cppcheck_suppressions.txt src/text src/*/rules || status=1
exit "$status"
