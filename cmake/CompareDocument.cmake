# Fails unless PROGRAM prints exactly what DOCUMENT holds.
execute_process(COMMAND "${PROGRAM}" OUTPUT_FILE "${WORK}/fresh.md" RESULT_VARIABLE failed)
if(failed)
  message(FATAL_ERROR "${PROGRAM} failed: ${failed}")
endif()
execute_process(COMMAND "${CMAKE_COMMAND}" -E compare_files "${WORK}/fresh.md" "${DOCUMENT}"
                RESULT_VARIABLE differs)
if(differs)
  message(FATAL_ERROR "${DOCUMENT} is out of date: cmake --build --preset release --target docs")
endif()
