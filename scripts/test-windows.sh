#!/usr/bin/env bash
# Cross-builds the Python-free core, the reference engines and the unit tests
# for 64-bit Windows, then runs the tests under Wine in a fresh prefix inside
# the build folder. Exits non-zero on any failure.
#
#   PCG_WIN_BUILD   build folder (default: build-win at the repository root)
#   JOBS            parallel build jobs (default: 2)
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${PCG_WIN_BUILD:-$root/build-win}"
jobs="${JOBS:-2}"

wine64=""
for candidate in /usr/lib/wine/wine64 /usr/lib64/wine/wine64 "$(command -v wine64 || true)"; do
  if [ -n "$candidate" ] && [ -x "$candidate" ]; then wine64="$candidate"; break; fi
done
if [ -z "$wine64" ]; then
  echo "test-windows: wine64 not found (scripts/install-deps.sh installs it)" >&2
  exit 1
fi
wineserver=""
for candidate in "$(dirname "$wine64")/wineserver" "$(command -v wineserver || true)"; do
  if [ -n "$candidate" ] && [ -x "$candidate" ]; then wineserver="$candidate"; break; fi
done

cmake -S "$root" -B "$build" \
  -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-w64.cmake" \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build "$build" -j "$jobs"

# A fresh prefix each run: the tests write the registry, and start from a clean one.
export WINEPREFIX="$build/wineprefix"
export WINEARCH=win64
export WINEDEBUG=-all
export WINELOADER="$wine64"
# No Mono or Gecko installer prompts, no display.
export WINEDLLOVERRIDES="mscoree,mshtml="
unset DISPLAY WAYLAND_DISPLAY

stop_wineserver() {
  if [ -n "$wineserver" ]; then "$wineserver" -k >/dev/null 2>&1 || true; fi
}
trap stop_wineserver EXIT

stop_wineserver
rm -rf "$WINEPREFIX"
"$wine64" wineboot -i >/dev/null 2>&1 || true
if [ -n "$wineserver" ]; then "$wineserver" -w; fi
if [ ! -f "$WINEPREFIX/system.reg" ]; then
  echo "test-windows: wineboot did not create $WINEPREFIX" >&2
  exit 1
fi

# The reference image engine's two classes, registered for real, as an
# installer would: COM finds them through the prefix's registry.
engine_dll="$("$wine64" winepath -w "$build/host/Kernel/ImageRetouch/ImageRetouch.dll" 2>/dev/null | tr -d '\r')"
for clsid in "{58529D7C-751A-47A9-982D-1560342ECB14}" "{62ECF08B-8B33-4DDB-AF2E-1DA140458C85}"; do
  "$wine64" reg add "HKLM\\Software\\Classes\\CLSID\\$clsid\\InprocServer32" /ve /d "$engine_dll" /f >/dev/null
  "$wine64" reg add "HKLM\\Software\\Classes\\CLSID\\$clsid\\InprocServer32" /v ThreadingModel /d Apartment /f >/dev/null
done
# Without a display Wine loads no window driver and CreateWindowExW fails; the
# null driver gives real, never-shown windows (the facade's hidden window).
"$wine64" reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f >/dev/null 2>&1
if [ -n "$wineserver" ]; then "$wineserver" -w; fi

# One test at a time: all test processes share the prefix's registry, and
# tests set and delete the same keys.
ctest --test-dir "$build" --output-on-failure --timeout 300
