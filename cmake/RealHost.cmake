# The host's own kit, found below DREVIN_NUKE_ROOT: <root>/include/DDImage and libDDImage.
find_path(DREVIN_DDIMAGE_INCLUDE DDImage/Op.h
          PATHS "${DREVIN_NUKE_ROOT}" "${DREVIN_NUKE_ROOT}/include"
          PATH_SUFFIXES include NO_DEFAULT_PATH)
find_library(DREVIN_DDIMAGE_LIBRARY DDImage
             PATHS "${DREVIN_NUKE_ROOT}" "${DREVIN_NUKE_ROOT}/lib" NO_DEFAULT_PATH)
if(NOT DREVIN_DDIMAGE_INCLUDE OR NOT DREVIN_DDIMAGE_LIBRARY)
  message(FATAL_ERROR "No DDImage kit below DREVIN_NUKE_ROOT=${DREVIN_NUKE_ROOT}: expected "
                      "include/DDImage/Op.h and the DDImage library there")
endif()

file(STRINGS "${DREVIN_DDIMAGE_INCLUDE}/DDImage/ddImageVersionNumbers.h" major_line
     REGEX "define[ \t]+kDDImageVersionMajorNum[ \t]+[0-9]+")
string(REGEX REPLACE ".*kDDImageVersionMajorNum[ \t]+([0-9]+).*" "\\1" DREVIN_HOST_MAJOR
       "${major_line}")
message(STATUS "Building the plug-in for the host's version ${DREVIN_HOST_MAJOR}")

add_library(drevin_real_host INTERFACE)
target_include_directories(drevin_real_host SYSTEM INTERFACE "${DREVIN_DDIMAGE_INCLUDE}")
target_link_libraries(drevin_real_host INTERFACE "${DREVIN_DDIMAGE_LIBRARY}")
if(DREVIN_HOST_MAJOR LESS 15)
  # Hosts before 15 were built with the older string ABI of libstdc++.
  target_compile_definitions(drevin_real_host INTERFACE _GLIBCXX_USE_CXX11_ABI=0)
endif()
