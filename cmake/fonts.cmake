# The window's text font comes from the system's DejaVu package and is copied into the build's
# data folder, so the program finds it beside itself like the rest of its data.
find_file(VELDRA_FONT_REGULAR DejaVuSans.ttf PATHS /usr/share/fonts/truetype/dejavu NO_DEFAULT_PATH)
if(NOT VELDRA_FONT_REGULAR)
  message(FATAL_ERROR "DejaVuSans.ttf was not found in /usr/share/fonts/truetype/dejavu: "
                      "install the package fonts-dejavu-core (scripts/setup.sh does).")
endif()
find_file(VELDRA_FONT_BOLD DejaVuSans-Bold.ttf PATHS /usr/share/fonts/truetype/dejavu NO_DEFAULT_PATH)
set(veldra_fonts ${VELDRA_FONT_REGULAR})
if(VELDRA_FONT_BOLD)
  list(APPEND veldra_fonts ${VELDRA_FONT_BOLD})
endif()
add_custom_target(veldra_fonts ALL
  COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/datafiles/fonts
  COMMAND ${CMAKE_COMMAND} -E copy_if_different ${veldra_fonts} ${CMAKE_BINARY_DIR}/datafiles/fonts/
  COMMENT "Copying the DejaVu fonts into the data folder")
add_dependencies(veldra_fonts veldra_datafiles)
