#!/usr/bin/env bash
# Builds the libraries the Windows program links, from Debian 12's own source packages, with
# the MinGW-w64 cross compiler, into PREFIX (static libraries, headers, CMake packages) and
# their licences into PREFIX/licences. Called by scripts/windows.sh, which names PREFIX after
# the versions below and a hash of this file, so a change here builds everything anew.
# Usage: windows_deps.sh PREFIX TOOLCHAIN_FILE
set -euo pipefail

prefix=$1
toolchain=$2
jobs=${JOBS:-2}

# Source package and the Debian version of it, as scripts/windows.sh pinned them.
: "${SDL2_VERSION:?}" "${SDL2_MIXER_VERSION:?}" "${IMGUI_VERSION:?}" "${CURL_VERSION:?}" \
  "${FMT_VERSION:?}"

work=$(mktemp -d "${TMPDIR:-/tmp}/veldra-windows-deps.XXXXXX")
trap 'rm -rf "$work"' EXIT
mkdir -p "$prefix/include" "$prefix/lib" "$prefix/licences"

# Unpacks a source package into $work and prints its folder.
fetch() {
  local package=$1 version=$2
  (cd "$work" && apt-get source -qq --only-source "$package=$version" >/dev/null 2>&1) ||
    { echo "apt-get source $package=$version failed" >&2; exit 1; }
  local folder
  folder=$(find "$work" -maxdepth 1 -type d -name "${package}-*" | head -n 1)
  cp "$folder/debian/copyright" "$prefix/licences/$package.txt"
  echo "$folder"
}

cmake_build() {
  local source=$1 build=$2
  shift 2
  cmake -S "$source" -B "$build" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" \
    -DVELDRA_WINDOWS_PREFIX="$prefix" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_INSTALL_PREFIX="$prefix" -DCMAKE_PREFIX_PATH="$prefix" "$@" >"$build.log" 2>&1 ||
    { tail -n 40 "$build.log" >&2; exit 1; }
  cmake --build "$build" -j "$jobs" >>"$build.log" 2>&1 || { tail -n 40 "$build.log" >&2; exit 1; }
  cmake --install "$build" >>"$build.log" 2>&1 || { tail -n 40 "$build.log" >&2; exit 1; }
}

step() { echo "  [$(date +%H:%M:%S)] $*"; }

step "SDL2 $SDL2_VERSION"
sdl=$(fetch libsdl2 "$SDL2_VERSION")
cmake_build "$sdl" "$work/sdl2-build" -DSDL_SHARED=OFF -DSDL_STATIC=ON -DSDL_TEST=OFF

# The game only plays sounds it synthesises: no decoder of any file format is needed.
step "SDL2_mixer $SDL2_MIXER_VERSION"
mixer=$(fetch libsdl2-mixer "$SDL2_MIXER_VERSION")
cmake_build "$mixer" "$work/mixer-build" -DBUILD_SHARED_LIBS=OFF -DSDL2MIXER_VENDORED=OFF \
  -DSDL2MIXER_SAMPLES=OFF -DSDL2MIXER_CMD=OFF -DSDL2MIXER_FLAC=OFF -DSDL2MIXER_MOD=OFF \
  -DSDL2MIXER_MIDI=OFF -DSDL2MIXER_MP3=OFF -DSDL2MIXER_OPUS=OFF -DSDL2MIXER_VORBIS=OFF \
  -DSDL2MIXER_WAVE=ON -DSDL2MIXER_INSTALL=ON -DSDL2_DIR="$prefix/lib/cmake/SDL2"

# HTTPS through Windows' own TLS (Schannel) and certificate store: no OpenSSL to ship.
step "curl $CURL_VERSION"
curl=$(fetch curl "$CURL_VERSION")
cmake_build "$curl" "$work/curl-build" -DBUILD_SHARED_LIBS=OFF -DBUILD_CURL_EXE=OFF \
  -DBUILD_TESTING=OFF -DENABLE_MANUAL=OFF -DCURL_USE_SCHANNEL=ON -DCURL_USE_OPENSSL=OFF \
  -DCURL_USE_LIBSSH2=OFF -DUSE_LIBIDN2=OFF -DUSE_NGHTTP2=OFF -DCURL_ZLIB=OFF -DCURL_BROTLI=OFF \
  -DCURL_ZSTD=OFF -DCURL_DISABLE_LDAP=ON -DENABLE_UNIX_SOCKETS=OFF

step "fmt $FMT_VERSION"
fmt=$(fetch fmtlib "$FMT_VERSION")
cmake_build "$fmt" "$work/fmt-build" -DFMT_TEST=OFF -DFMT_DOC=OFF -DBUILD_SHARED_LIBS=OFF

# Dear ImGui has no build of its own: the core and the two backends the game uses (SDL input,
# SDL_Renderer drawing), laid out as Debian's libimgui-dev lays them out, so the same
# #include lines work.
step "Dear ImGui $IMGUI_VERSION"
imgui=$(fetch imgui "$IMGUI_VERSION")
mkdir -p "$prefix/include/imgui/backends" "$work/imgui-build"
cp "$imgui"/imgui.h "$imgui"/imgui_internal.h "$imgui"/imconfig.h "$imgui"/imstb_*.h \
  "$prefix/include/imgui/"
cp "$imgui"/misc/cpp/imgui_stdlib.h "$prefix/include/imgui/"
cp "$imgui"/backends/imgui_impl_sdl.h "$imgui"/backends/imgui_impl_sdlrenderer.h \
  "$prefix/include/imgui/backends/"
objects=()
for source in imgui.cpp imgui_draw.cpp imgui_tables.cpp imgui_widgets.cpp imgui_demo.cpp \
    misc/cpp/imgui_stdlib.cpp backends/imgui_impl_sdl.cpp backends/imgui_impl_sdlrenderer.cpp; do
  object="$work/imgui-build/$(basename "$source" .cpp).o"
  x86_64-w64-mingw32-g++-posix -O2 -std=c++17 -I"$imgui" -I"$prefix/include/SDL2" \
    -c "$imgui/$source" -o "$object" &
  objects+=("$object")
  # Two compilers at a time at most.
  if (( ${#objects[@]} % jobs == 0 )); then wait; fi
done
wait
for object in "${objects[@]}"; do [ -f "$object" ] || { echo "imgui: $object missing" >&2; exit 1; }; done
x86_64-w64-mingw32-ar rcs "$prefix/lib/libimgui.a" "${objects[@]}"

# Header-only libraries, from the Debian packages the Linux build uses.
step "nlohmann-json and stb headers"
cp -r /usr/include/nlohmann "$prefix/include/"
mkdir -p "$prefix/share/cmake"
cp -r /usr/share/cmake/nlohmann_json "$prefix/share/cmake/"
cp -r /usr/include/stb "$prefix/include/"
cp /usr/share/doc/nlohmann-json3-dev/copyright "$prefix/licences/nlohmann-json.txt"
cp /usr/share/doc/libstb-dev/copyright "$prefix/licences/stb.txt"

step "GoogleTest (for the tests)"
cmake_build /usr/src/googletest "$work/gtest-build" -DBUILD_GMOCK=ON -DINSTALL_GTEST=ON \
  -Dgtest_force_shared_crt=ON

# The compiler's own runtime goes into the program too (linked statically).
cp /usr/share/doc/gcc-mingw-w64-base/copyright "$prefix/licences/gcc-mingw-w64.txt" 2>/dev/null ||
  true
cp /usr/share/doc/mingw-w64-common/copyright "$prefix/licences/mingw-w64.txt" 2>/dev/null || true
step "done"
