# SPDX-License-Identifier: MIT
# Target `orvalis_opencv`: OpenCV's core and imgproc. Debian has a CMake configuration only for the whole of
# OpenCV, so header and libraries are looked for.
find_path(OPENCV_INCLUDE_DIR opencv2/imgproc.hpp PATH_SUFFIXES opencv4 REQUIRED)
find_library(OPENCV_CORE_LIBRARY opencv_core REQUIRED)
find_library(OPENCV_IMGPROC_LIBRARY opencv_imgproc REQUIRED)
add_library(orvalis_opencv INTERFACE)
target_include_directories(orvalis_opencv SYSTEM INTERFACE "${OPENCV_INCLUDE_DIR}")
target_link_libraries(orvalis_opencv INTERFACE "${OPENCV_IMGPROC_LIBRARY}" "${OPENCV_CORE_LIBRARY}")
