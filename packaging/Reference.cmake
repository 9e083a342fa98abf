# SPDX-License-Identifier: MIT
# Builds the reference of the camera library as web pages with Doxygen: the target "reference", and a test that
# Doxygen reports no warning.
find_program(DOXYGEN_PROGRAM doxygen)
if(NOT DOXYGEN_PROGRAM)
  return()
endif()
configure_file("${PROJECT_SOURCE_DIR}/docs/Doxyfile.in" Doxyfile @ONLY)
add_custom_target(reference COMMAND "${DOXYGEN_PROGRAM}" "${CMAKE_CURRENT_BINARY_DIR}/Doxyfile"
  COMMENT "Writing the reference of the camera library to reference/html" VERBATIM)
if(ORVALIS_TESTS)
  add_test(NAME referenceHasNoWarning COMMAND "${DOXYGEN_PROGRAM}" "${CMAKE_CURRENT_BINARY_DIR}/Doxyfile")
  orvalis_test_properties(referenceHasNoWarning unit 120)
endif()
