# Scanner libraries for the tests of several folders and the benchmarks: SCANNER_LIBRARIES/<name>.so (or .dll), which a
# test copies into its server's application directory under a scanner's name.

function(scanner_test_library name)
  add_library(scanner_${name} MODULE ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/scanner_test_library.cpp)
  target_compile_definitions(scanner_${name} PRIVATE ${ARGN})
  target_include_directories(scanner_${name} PRIVATE ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(scanner_${name} PRIVATE pv_options)
  set_target_properties(scanner_${name} PROPERTIES PREFIX "" OUTPUT_NAME ${name}
                                                   LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests/scanners)
endfunction()
scanner_test_library(whole SCANNER_INITIALIZE=PV_Initialize SCANNER_EXECUTE=PV_Execute SCANNER_CLEAN_UP=PV_CleanUp
                     SCANNER_PROVIDER_EXECUTE)
scanner_test_library(fallback_names SCANNER_INITIALIZE=Initialize SCANNER_EXECUTE=Execute SCANNER_CLEAN_UP=CleanUp)
scanner_test_library(mixed_names SCANNER_INITIALIZE=PV_Initialize SCANNER_EXECUTE=Execute SCANNER_CLEAN_UP=PV_CleanUp)
scanner_test_library(without_clean_up SCANNER_INITIALIZE=PV_Initialize SCANNER_EXECUTE=PV_Execute)
scanner_test_library(without_execute SCANNER_INITIALIZE=PV_Initialize SCANNER_CLEAN_UP=PV_CleanUp)

function(use_scanner_libraries target)
  # Two DLLs of 32-bit Windows that were each linked with the run-time do not know of each other's frames.
  set(throw 1)
  if(WIN32 AND CMAKE_SIZEOF_VOID_P EQUAL 4)
    set(throw 0)
  endif()
  target_compile_definitions(${target} PRIVATE
    SCANNER_LIBRARIES="${CMAKE_BINARY_DIR}/tests/scanners" LIBRARY_SUFFIX="${CMAKE_SHARED_MODULE_SUFFIX}"
    SCANNERS_THROW=${throw})
  add_dependencies(${target} scanner_whole scanner_fallback_names scanner_mixed_names scanner_without_clean_up
                   scanner_without_execute)
endfunction()
