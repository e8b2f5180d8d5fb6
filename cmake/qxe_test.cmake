# Tests: how a suite is built and in which settings it runs.
find_package(GTest REQUIRED)

# Test code is many small programs: what counts is the time to build them. More optimisation also
# makes GCC 12 warn about the insides of std::string and std::variant.
add_library(qxe_test_options INTERFACE)
target_compile_options(qxe_test_options INTERFACE -O1)
target_link_libraries(qxe_test_options INTERFACE qxe_options)

# Everything that runs parallel work; what a build for the thread sanitizer needs.
add_custom_target(parallel_tests)

# qxe_test_directory(directory THREADS n [SETTINGS key=value...] [DATE_FORMAT word])
# A working directory with the profile files that the engine reads when it is loaded.
function(qxe_test_directory directory)
  cmake_parse_arguments(arg "" "THREADS;DATE_FORMAT" "SETTINGS" ${ARGN})
  # One row is worth a worker, so that the smallest tables reach the parallel paths.
  set(lines "[SYSINFO]" "RUNTHREADS=${arg_THREADS}" "ROWS_PER_WORKER=1" ${arg_SETTINGS})
  list(JOIN lines "\n" text)
  file(CONFIGURE OUTPUT ${directory}/3by1sysinfo.ini CONTENT "${text}\n")
  if(arg_DATE_FORMAT)
    file(CONFIGURE OUTPUT ${directory}/ZVK_Client.ini
      CONTENT "[CLIENT]\nDATEFORMAT=${arg_DATE_FORMAT}\n")
  endif()
endfunction()

# qxe_add_test(name SOURCES file... [INNER] [PARALLEL] [SETTINGS key=value...] [DATE_FORMAT word]
#              [THREADS n...] [LOCK resource])
# A GoogleTest program, one suite in each source. It is linked with the shared library and sees the
# public header only; INNER links the engine's objects and sees the headers of src/. It runs with
# two workers; PARALLEL runs it with 1, 2, 3 and 8 in turn, or with the numbers of THREADS. SETTINGS
# are further lines of the profile file's section, DATE_FORMAT is the date order. Tests with the
# same LOCK never overlap.
function(qxe_add_test name)
  cmake_parse_arguments(arg "INNER;PARALLEL" "DATE_FORMAT;LOCK" "SOURCES;SETTINGS;THREADS" ${ARGN})
  set(engine qxe)
  set(labels api)
  if(arg_INNER)
    set(engine qxe_objects)
    set(labels inner)
  endif()
  set(thread_counts 2)
  if(arg_PARALLEL)
    set(thread_counts 1 2 3 8)
    if(arg_THREADS)
      set(thread_counts ${arg_THREADS})
    endif()
    list(APPEND labels parallel)
  endif()
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE qxe_test_support ${engine} GTest::gtest_main qxe_test_options)
  if(arg_PARALLEL)
    add_dependencies(parallel_tests ${name})
  endif()
  foreach(threads IN LISTS thread_counts)
    set(test ${name}.threads_${threads})
    set(directory ${CMAKE_CURRENT_BINARY_DIR}/${test})
    qxe_test_directory(${directory} THREADS ${threads} SETTINGS ${arg_SETTINGS}
      DATE_FORMAT ${arg_DATE_FORMAT})
    add_test(NAME ${test} COMMAND ${name} WORKING_DIRECTORY ${directory})
    set_tests_properties(${test} PROPERTIES
      LABELS "${labels}" TIMEOUT 600 RESOURCE_LOCK "${arg_LOCK}")
  endforeach()
endfunction()
