#!/usr/bin/env bash
# Cross-builds the Windows program on Debian 12 (run as root): installs the MinGW-w64 compiler
# and Wine, builds the libraries Debian does not ship for Windows from Debian's own source
# packages into a cache outside the repository (once per set of versions), builds veldra.exe
# and the unit tests into build-windows/, and packs dist/veldra-windows-x64.zip.
# docs/windows.md tells the rest; scripts/windows_test.sh runs the result under Wine.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
export JOBS=${JOBS:-2}
build_dir=build-windows
zip_path=dist/veldra-windows-x64.zip

packages=(
  g++-mingw-w64-x86-64-posix wine wine64 zip dpkg-dev cmake ninja-build
  nlohmann-json3-dev libstb-dev googletest fonts-dejavu-core fonts-dejavu-extra
)
source scripts/install_packages.sh
install_packages "${packages[@]}"

# apt-get source needs source entries; Debian's images ship only binary ones.
if ! grep -rqsE '^(Types:.*deb-src|deb-src )' /etc/apt/sources.list /etc/apt/sources.list.d/; then
  echo "Adding Debian 12 source entries for apt-get source"
  cat >/etc/apt/sources.list.d/veldra-bookworm-src.sources <<'EOF'
Types: deb-src
URIs: http://deb.debian.org/debian
Suites: bookworm bookworm-updates
Components: main
Signed-By: /usr/share/keyrings/debian-archive-keyring.gpg

Types: deb-src
URIs: http://deb.debian.org/debian-security
Suites: bookworm-security
Components: main
Signed-By: /usr/share/keyrings/debian-archive-keyring.gpg
EOF
  apt-get update -qq
fi

# The newest Debian revision of a pinned upstream version: security fixes are taken, a new
# upstream release is not (it would change what the game links without anyone deciding it).
debian_version() {
  local package=$1 upstream=$2 version
  version=$(apt-cache showsrc "$package" 2>/dev/null | awk '/^Version:/ {print $2}' |
    grep -E "^${upstream//./\\.}[+-]" | sort -V | tail -n 1 || true)
  if [ -z "$version" ]; then
    echo "No source package $package $upstream in the apt sources (is this Debian 12?)" >&2
    exit 1
  fi
  echo "$version"
}
export SDL2_VERSION SDL2_MIXER_VERSION IMGUI_VERSION CURL_VERSION FMT_VERSION
SDL2_VERSION=$(debian_version libsdl2 2.26.5)
SDL2_MIXER_VERSION=$(debian_version libsdl2-mixer 2.6.2)
IMGUI_VERSION=$(debian_version imgui 1.86)
CURL_VERSION=$(debian_version curl 7.88.1)
FMT_VERSION=$(debian_version fmtlib 9.1.0)
header_versions=$(dpkg-query -W -f='${Package} ${Version}\n' nlohmann-json3-dev libstb-dev googletest \
  g++-mingw-w64-x86-64-posix)

# The cache is named after everything that goes into it, so a new version or recipe builds
# afresh beside the old one instead of mixing with it.
key=$( {
  echo "$SDL2_VERSION $SDL2_MIXER_VERSION $IMGUI_VERSION $CURL_VERSION $FMT_VERSION"
  echo "$header_versions"
  cat scripts/windows_deps.sh cmake/mingw-w64.cmake
} | sha256sum | cut -c1-16)
prefix=${VELDRA_WINDOWS_CACHE:-/var/cache/veldra-windows}/deps-$key
if [ ! -f "$prefix/.complete" ]; then
  echo "Building the Windows libraries into $prefix (once for these versions)"
  rm -rf "$prefix"
  mkdir -p "$prefix"
  bash scripts/windows_deps.sh "$prefix" "$root/cmake/mingw-w64.cmake"
  touch "$prefix/.complete"
else
  echo "Windows libraries: $prefix (cached)"
fi

echo "Building veldra.exe and the unit tests into $build_dir/"
cmake -S . -B "$build_dir" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-w64.cmake" \
  -DVELDRA_WINDOWS_PREFIX="$prefix" -DCMAKE_BUILD_TYPE=Release -DVELDRA_WERROR=ON \
  -DVELDRA_BUILD_SERVER=OFF -DVELDRA_BUILD_BENCH=OFF ${CMAKE_EXTRA_ARGS:-} >/dev/null
cmake --build "$build_dir" -j "$JOBS" --target ${BUILD_TARGETS:-all}

echo "Packing $zip_path"
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
package=$stage/veldra
mkdir -p "$package/licences"
cp "$build_dir/veldra.exe" "$package/"
x86_64-w64-mingw32-strip "$package/veldra.exe"
# datafiles/ as the build laid it out, fonts included (cmake/fonts.cmake).
cp -r "$build_dir/datafiles" "$package/"
cp docs/windows_readme.txt "$package/README.txt"
cp "$prefix"/licences/*.txt "$package/licences/"
cp /usr/share/doc/fonts-dejavu-core/copyright "$package/licences/fonts-dejavu.txt"
# Only the DLLs every Windows has may remain: anything else would have to travel in the zip.
allowed='^(kernel32|user32|gdi32|winmm|imm32|ole32|oleaut32|version|advapi32|setupapi|shell32|ws2_32|crypt32|bcrypt|secur32|normaliz|iphlpapi|msvcrt|shlwapi|comdlg32|dinput8|dxgi|d3d9|d3d11|hid|cfgmgr32|userenv|rpcrt4|wldap32)\.dll$'
foreign=$(x86_64-w64-mingw32-objdump -p "$package/veldra.exe" | awk '/DLL Name:/ {print tolower($3)}' |
  grep -vE "$allowed" || true)
if [ -n "$foreign" ]; then
  echo "veldra.exe needs DLLs that are not part of Windows: $foreign" >&2
  exit 1
fi
mkdir -p dist
rm -f "$zip_path"
(cd "$stage" && zip -qr9 "$root/$zip_path" veldra)
echo "Done: $zip_path ($(du -h "$zip_path" | cut -f1))"
