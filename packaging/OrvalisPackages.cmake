# SPDX-License-Identifier: MIT
# CPack: "cpack --preset package" makes a Debian package; "cpack --config CPackSourceConfig.cmake" in a build folder
# makes an archive of the sources.
set(CPACK_PACKAGE_NAME orvalisviewer)
set(CPACK_PACKAGE_VENDOR "The OrvalisViewer developers")
set(CPACK_PACKAGE_CONTACT "The OrvalisViewer developers <maintainers@orvalis.example>")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Viewer and controller for machine-vision cameras")
set(CPACK_PACKAGE_DESCRIPTION
"Displays live images of GigE Vision and USB3 Vision cameras, changes their
settings, browses their feature tree and saves images.
.
The package contains the viewer, its camera library libOrvalisAPI.so and the
header that other programs need to use the library.")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_STRIP_FILES ON)
set(CPACK_GENERATOR DEB)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# Dependencies are computed from the installed files; the package's own library is in the build tree.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/library")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS OFF)
# Writing TIF needs a Qt plugin that is loaded at run time, so no tool detects it.
set(CPACK_DEBIAN_PACKAGE_DEPENDS qt5-image-formats-plugins)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
file(WRITE "${CMAKE_CURRENT_BINARY_DIR}/triggers" "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA "${CMAKE_CURRENT_BINARY_DIR}/triggers")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_SOURCE_GENERATOR TGZ)
set(CPACK_SOURCE_PACKAGE_FILE_NAME "orvalisviewer-${PROJECT_VERSION}")
# In a git worktree .git is a file.
set(CPACK_SOURCE_IGNORE_FILES "/\\\\.git$" "/\\\\.git/" "/build/" "/\\\\.cache/" "\\\\.user$")
include(CPack)
