add_library(veldra_options INTERFACE)
target_compile_options(veldra_options INTERFACE -Wall -Wextra)
# No fused multiply-adds: whether a compiler fuses a * b + c depends on the compiler and the
# target, and a fused one rounds once instead of twice; the records must be the same bits on
# every system (docs/design.md). -ffast-math stays out for the same reason.
target_compile_options(veldra_options INTERFACE -ffp-contract=off)
if(VELDRA_WERROR)
  target_compile_options(veldra_options INTERFACE -Werror)
endif()
# GCC 12's standard library trips -Wrestrict on "literal" + std::string at -O3, a false
# positive of that release that says nothing about our code; it would stop Release builds.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(veldra_options INTERFACE -Wno-restrict)
endif()
if(VELDRA_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "VELDRA_FUZZ needs clang (CXX=clang++): libFuzzer is clang's.")
  endif()
  target_compile_options(veldra_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  target_link_options(veldra_options INTERFACE -fsanitize=address,undefined)
elseif(VELDRA_SANITIZE)
  target_compile_options(veldra_options INTERFACE -fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  target_link_options(veldra_options INTERFACE -fsanitize=address,undefined)
endif()

# Where the operating system shows through, one header name.h has name_posix.cpp behind it
# for Linux and name_windows.cpp for Windows, and each build takes its own: the choice is made
# here once instead of in #ifdefs through the code.
function(veldra_select_platform_sources out_var)
  set(selected ${ARGN})
  if(WIN32)
    list(FILTER selected EXCLUDE REGEX "_posix\\.cpp$")
  else()
    list(FILTER selected EXCLUDE REGEX "_windows\\.cpp$")
  endif()
  set(${out_var} ${selected} PARENT_SCOPE)
endfunction()

# One static library per subsystem folder; sources are picked up by glob so that adding a
# file never means editing a list. DEPS names the lower folders it builds on.
function(veldra_library name)
  cmake_parse_arguments(ARG "" "" "DEPS" ${ARGN})
  file(GLOB_RECURSE srcs CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  veldra_select_platform_sources(srcs ${srcs})
  if(srcs)
    add_library(veldra_${name} STATIC ${srcs})
    target_include_directories(veldra_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(veldra_${name} PUBLIC veldra_options ${ARG_DEPS})
  else()
    # A folder of headers only.
    add_library(veldra_${name} INTERFACE)
    target_include_directories(veldra_${name} INTERFACE ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(veldra_${name} INTERFACE veldra_options ${ARG_DEPS})
  endif()
endfunction()

# One GoogleTest executable per tests/ folder, mirroring src/. NOT_ON_WINDOWS names the files
# of tests that only make sense on POSIX systems (each folder says why), NEEDS_SERVER those
# that start the study server (VELDRA_BUILD_SERVER); a build that cannot run its own programs
# (a cross build) leaves finding the tests in them to whoever runs them.
function(veldra_test_folder name)
  cmake_parse_arguments(ARG "" "" "DEPS;NOT_ON_WINDOWS;NEEDS_SERVER" ${ARGN})
  file(GLOB_RECURSE srcs CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  veldra_select_platform_sources(srcs ${srcs})
  set(excluded "")
  if(WIN32)
    list(APPEND excluded ${ARG_NOT_ON_WINDOWS})
  endif()
  if(NOT VELDRA_BUILD_SERVER)
    list(APPEND excluded ${ARG_NEEDS_SERVER})
  endif()
  foreach(file ${excluded})
    list(REMOVE_ITEM srcs ${CMAKE_CURRENT_SOURCE_DIR}/${file})
  endforeach()
  if(NOT srcs)
    return()
  endif()
  add_executable(test_${name} ${srcs})
  set_target_properties(test_${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
  target_link_libraries(test_${name} PRIVATE veldra_${name} ${ARG_DEPS} GTest::gtest GTest::gmock GTest::gtest_main)
  target_include_directories(test_${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_compile_definitions(test_${name} PRIVATE VELDRA_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  if(NOT CMAKE_CROSSCOMPILING)
    gtest_discover_tests(test_${name} WORKING_DIRECTORY ${CMAKE_BINARY_DIR} DISCOVERY_TIMEOUT 60)
  endif()
endfunction()

# The simulation (runtime up to trials) must build and run with no window, no sound and no
# network, so that a trial's bytes can never depend on them: configuring fails if one of its
# libraries reaches SDL, Dear ImGui, libcurl, cpp-httplib or SQLite, directly or through
# another library.
function(veldra_collect_links target out_var)
  set(seen ${${out_var}})
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "INTERFACE_LIBRARY")
    get_target_property(links ${target} INTERFACE_LINK_LIBRARIES)
  else()
    get_target_property(links ${target} LINK_LIBRARIES)
  endif()
  foreach(link IN LISTS links)
    if(link AND NOT link IN_LIST seen)
      list(APPEND seen ${link})
      if(TARGET ${link})
        veldra_collect_links(${link} seen)
      endif()
    endif()
  endforeach()
  set(${out_var} ${seen} PARENT_SCOPE)
endfunction()

function(veldra_forbid_presentation_libraries)
  foreach(target ${ARGN})
    set(links "")
    veldra_collect_links(${target} links)
    foreach(link IN LISTS links)
      if(link MATCHES "(^|[^a-z])(SDL2|sdl2|SDL2_mixer|imgui|ImGui|curl|CURL|httplib|SQLite|sqlite)")
        message(FATAL_ERROR "${target} is part of the simulation and must not link ${link}: "
                            "drawing, sound and HTTP belong in ui/ and platform/, the study "
                            "server's HTTP and storage in server/.")
      endif()
    endforeach()
  endforeach()
endfunction()
