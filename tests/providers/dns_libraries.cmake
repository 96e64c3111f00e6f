# DNS look-up libraries for the tests of several folders, each in a directory of its name: with all entry points, or some.
set(dns_libraries ${CMAKE_BINARY_DIR}/tests/dns)
# Two DLLs of 32-bit Windows that were each linked with the run-time do not know of each other's frames.
set(dns_libraries_throw 1)
if(WIN32 AND CMAKE_SIZEOF_VOID_P EQUAL 4)
  set(dns_libraries_throw 0)
endif()

function(dns_test_library directory)
  add_library(dns_${directory} MODULE ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/dns_test_library.cpp)
  target_compile_definitions(dns_${directory} PRIVATE ${ARGN})
  target_include_directories(dns_${directory} PRIVATE ${PROJECT_SOURCE_DIR}/include)
  target_link_libraries(dns_${directory} PRIVATE pv_options)
  set_target_properties(dns_${directory} PROPERTIES PREFIX "" OUTPUT_NAME PVWINDNS
                                                    LIBRARY_OUTPUT_DIRECTORY ${dns_libraries}/${directory})
endfunction()
dns_test_library(whole WITH_LOGGING WITH_INITIALISE WITH_LOOK_UP)
# The same once more: a library stays loaded, and keeps what it was told.
dns_test_library(unlogged WITH_LOGGING WITH_INITIALISE WITH_LOOK_UP)
dns_test_library(initialise_only WITH_INITIALISE)
dns_test_library(look_up_only WITH_LOOK_UP)
