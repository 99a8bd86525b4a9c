# Compiles the files of a target that lie in one folder as one file, where DREVIN_JOIN_SOURCES asks for
# it: what all of them include is then read, and made into code, once. Not those named after EXCEPT,
# which use names of their own for other things than their neighbours do.
function(drevin_join_sources target)
  if(NOT DREVIN_JOIN_SOURCES)
    return()
  endif()
  cmake_parse_arguments(PARSE_ARGV 1 join "" "" "EXCEPT")
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
  get_target_property(sources ${target} SOURCES)
  list(FILTER sources INCLUDE REGEX "\\.cpp$")
  list(REMOVE_ITEM sources ${join_EXCEPT})
  foreach(source IN LISTS sources)
    get_filename_component(folder "${source}" DIRECTORY)
    string(MAKE_C_IDENTIFIER "all_${folder}" group)
    set_source_files_properties("${source}" PROPERTIES UNITY_GROUP ${group})
  endforeach()
endfunction()

# Compiles the files of a target eight at a time, where all at once would be too many.
function(drevin_join_batches target)
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE BATCH UNITY_BUILD_BATCH_SIZE 8)
endfunction()
