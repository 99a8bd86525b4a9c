# Each header compiles by itself, twice, with nothing in reach but what its folder may include.

# Compiles the headers of folders of the project, named as they are included from `root`.
function(drevin_headers_alone target root)
  set(patterns ${ARGN})
  list(TRANSFORM patterns PREPEND "${PROJECT_SOURCE_DIR}/${root}/")
  list(TRANSFORM patterns APPEND "/*.h")
  file(GLOB headers CONFIGURE_DEPENDS RELATIVE "${PROJECT_SOURCE_DIR}/${root}" ${patterns})
  set(sources)
  foreach(header IN LISTS headers)
    string(REPLACE "/" "_" name "${header}")
    set(source "${CMAKE_CURRENT_BINARY_DIR}/headers/${target}/${name}.cpp")
    file(GENERATE OUTPUT "${source}" CONTENT "#include \"${header}\"\n#include \"${header}\"\n")
    list(APPEND sources "${source}")
  endforeach()
  add_library(${target} OBJECT ${sources})
  target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}/${root}")
  target_link_libraries(${target} PRIVATE drevin_warnings drevin_floating_point)
endfunction()

# Imaging code knows no host.
drevin_headers_alone(drevin_headers_alone src kernel defocus deep engine)

set(host_include "${PROJECT_SOURCE_DIR}/host/include")
drevin_headers_alone(drevin_node_headers_alone src node)
target_include_directories(drevin_node_headers_alone PRIVATE "${host_include}")

# The host knows nothing of Drevin.
drevin_headers_alone(drevin_host_headers_alone host/include DDImage EmbeddedHost)
drevin_headers_alone(drevin_host_inner_headers_alone host src)
target_include_directories(drevin_host_inner_headers_alone
                           PRIVATE "${host_include}" "${PROJECT_SOURCE_DIR}/host/src")
