# The window's libraries in the Windows build: static libraries scripts/windows.sh builds into
# VELDRA_WINDOWS_PREFIX (the toolchain file searches only there). Their pkg-config files would
# name the Linux host's folders, so the packages' CMake files are used, and Dear ImGui (which
# has no build of its own) is found by hand. Veldra::imgui and Veldra::window stand in for the
# pkg-config targets of the Linux build.
find_package(SDL2 REQUIRED CONFIG)
find_package(SDL2_mixer REQUIRED CONFIG)
find_library(VELDRA_IMGUI_LIBRARY imgui REQUIRED)
find_path(VELDRA_IMGUI_INCLUDE imgui.h PATH_SUFFIXES imgui REQUIRED)
find_path(VELDRA_STB_INCLUDE stb_image.h PATH_SUFFIXES stb REQUIRED)

add_library(Veldra::imgui INTERFACE IMPORTED GLOBAL)
target_include_directories(Veldra::imgui INTERFACE ${VELDRA_IMGUI_INCLUDE})
target_link_libraries(Veldra::imgui INTERFACE ${VELDRA_IMGUI_LIBRARY})

add_library(Veldra::window INTERFACE IMPORTED GLOBAL)
target_include_directories(Veldra::window INTERFACE ${VELDRA_STB_INCLUDE})
# The game has its own main(): SDL must not rename it (SDL_main.h).
target_compile_definitions(Veldra::window INTERFACE SDL_MAIN_HANDLED)
# ImGui's SDL backends sit in libimgui.a, so SDL comes after it on the link line.
target_link_libraries(Veldra::window INTERFACE Veldra::imgui SDL2_mixer::SDL2_mixer-static
                      SDL2::SDL2-static)

# Debian's libstb ships stb's functions compiled; here they are compiled from the same headers.
file(WRITE ${CMAKE_BINARY_DIR}/generated/stb_functions.cpp
     "#define STB_IMAGE_IMPLEMENTATION\n#define STB_IMAGE_WRITE_IMPLEMENTATION\n"
     "#include <stb_image.h>\n#include <stb_image_write.h>\n")
add_library(stb_functions STATIC ${CMAKE_BINARY_DIR}/generated/stb_functions.cpp)
target_include_directories(stb_functions SYSTEM PUBLIC ${VELDRA_STB_INCLUDE})
target_compile_options(stb_functions PRIVATE -w)  # not our code: its warnings are not ours to fix
target_link_libraries(Veldra::window INTERFACE stb_functions)
