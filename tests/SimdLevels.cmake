# Tests at the instruction sets that the processor at hand would not choose. Discovered tests run at
# the best one.

# Runs those tests of a program that the filter lets through, once for each lesser set, as one test
# each. The optimised build alone: what sanitizers look for is in the copy of any one set.
function(drevin_test_at_simd_levels target filter)
  if(DREVIN_SANITIZE OR NOT CMAKE_BUILD_TYPE STREQUAL "Release")
    return()
  endif()
  foreach(level IN ITEMS baseline avx2)
    add_test(NAME ${target}.allAtLevel_${level} COMMAND ${target} "--gtest_filter=${filter}")
    # Long ones first, or one processor waits for them at the end.
    set_tests_properties(${target}.allAtLevel_${level} PROPERTIES
      ENVIRONMENT DREVIN_SIMD=${level} COST 1000 TIMEOUT 600)
  endforeach()
endfunction()
