# Each imaging header compiles by itself, with no host in reach.
file(GLOB imaging_headers CONFIGURE_DEPENDS RELATIVE "${PROJECT_SOURCE_DIR}/src"
     "${PROJECT_SOURCE_DIR}/src/kernel/*.h" "${PROJECT_SOURCE_DIR}/src/defocus/*.h"
     "${PROJECT_SOURCE_DIR}/src/deep/*.h")
set(header_sources)
foreach(header IN LISTS imaging_headers)
  string(REPLACE "/" "_" name "${header}")
  set(source "${CMAKE_CURRENT_BINARY_DIR}/headers/${name}.cpp")
  file(GENERATE OUTPUT "${source}" CONTENT "#include \"${header}\"\n#include \"${header}\"\n")
  list(APPEND header_sources "${source}")
endforeach()
add_library(drevin_headers_alone OBJECT ${header_sources})
target_include_directories(drevin_headers_alone PRIVATE "${PROJECT_SOURCE_DIR}/src")
target_link_libraries(drevin_headers_alone PRIVATE drevin_warnings drevin_floating_point)
