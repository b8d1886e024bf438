# Tests that load the C library of this build into Python.
set(environment
  "PELM=$<TARGET_FILE:pelm>"
  "PELM_VERSION=${PROJECT_VERSION}"
  "PELM_LIBRARY=$<TARGET_FILE:pelm_c>"
  "PYTHONPATH=${PROJECT_SOURCE_DIR}/python"
  "PYTHONDONTWRITEBYTECODE=1")

# The interpreter knows nothing of the sanitizer, which wants to be there first; the C++ library
# with it, for the sanitizer to find what throws. What the interpreter keeps to its end is no leak.
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize=address")
  foreach(library libasan.so libstdc++.so.6)
    execute_process(COMMAND "${CMAKE_CXX_COMPILER}" -print-file-name=${library}
                    OUTPUT_VARIABLE found OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    list(APPEND preloaded "${found}")
  endforeach()
  list(JOIN preloaded ":" preloaded)
  list(APPEND environment "LD_PRELOAD=${preloaded}" "ASAN_OPTIONS=detect_leaks=0")
endif()
set(PELM_PYTHON_ENVIRONMENT ${environment})

# pelm_embedding_test(FILE): pelm_python_test for a file that loads the library. Not with the thread
# sanitizer, which would watch the interpreter's own threads without knowing them.
function(pelm_embedding_test file)
  if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize=thread")
    pelm_python_test(${file} ${PELM_PYTHON_ENVIRONMENT})
  endif()
endfunction()
