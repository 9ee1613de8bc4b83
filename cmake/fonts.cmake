# The window's text faces come from the system's DejaVu packages and are copied into the build's
# data folder, so the program finds them beside itself like the rest of its data. The regular
# and bold faces are in fonts-dejavu-core, the oblique ones in fonts-dejavu-extra.
set(veldra_font_dir /usr/share/fonts/truetype/dejavu)
set(veldra_fonts "")
foreach(face_and_package
    "DejaVuSans.ttf|fonts-dejavu-core"
    "DejaVuSans-Bold.ttf|fonts-dejavu-core"
    "DejaVuSans-Oblique.ttf|fonts-dejavu-extra"
    "DejaVuSans-BoldOblique.ttf|fonts-dejavu-extra")
  string(REPLACE "|" ";" face_and_package "${face_and_package}")
  list(GET face_and_package 0 face)
  list(GET face_and_package 1 package)
  string(MAKE_C_IDENTIFIER "VELDRA_FONT_${face}" variable)
  # Host files copied into the data folder: a cross build must not look for them in its sysroot.
  find_file(${variable} ${face} PATHS ${veldra_font_dir} NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
  if(NOT ${variable})
    message(FATAL_ERROR "${face} was not found in ${veldra_font_dir}: "
                        "install the package ${package} (scripts/setup.sh does).")
  endif()
  list(APPEND veldra_fonts ${${variable}})
endforeach()
add_custom_target(veldra_fonts ALL
  COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/datafiles/fonts
  COMMAND ${CMAKE_COMMAND} -E copy_if_different ${veldra_fonts} ${CMAKE_BINARY_DIR}/datafiles/fonts/
  COMMENT "Copying the DejaVu fonts into the data folder")
add_dependencies(veldra_fonts veldra_datafiles)
