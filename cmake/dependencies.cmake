# The libraries that the agent, the program and the tests use: Debian's packages, and when cross compiling their sources or headers.
if(NOT CMAKE_CROSSCOMPILING)
  find_package(GTest REQUIRED)
  find_package(CLI11 REQUIRED)
  find_package(nlohmann_json REQUIRED)
  # The regular expressions of scripts. Debian has no PCRE2 for MinGW: that build's engine has no RegExp.
  find_path(PCRE2_INCLUDE_DIR pcre2.h REQUIRED)
  find_library(PCRE2_LIBRARY pcre2-8 REQUIRED)
  add_library(PCRE2::pcre2-8 UNKNOWN IMPORTED)
  set_target_properties(PCRE2::pcre2-8 PROPERTIES IMPORTED_LOCATION ${PCRE2_LIBRARY}
                                                  INTERFACE_INCLUDE_DIRECTORIES ${PCRE2_INCLUDE_DIR})
  return()
endif()

# /usr/include as a whole would hide the cross compiler's own headers, so each library's folder is shown by itself.
foreach(library CLI11/CLI nlohmann_json/nlohmann)
  cmake_path(GET library PARENT_PATH target)
  cmake_path(GET library FILENAME folder)
  set(root ${CMAKE_BINARY_DIR}/headers/${target})
  file(MAKE_DIRECTORY ${root})
  file(CREATE_LINK /usr/include/${folder} ${root}/${folder} SYMBOLIC)
  add_library(${target}::${target} INTERFACE IMPORTED)
  target_include_directories(${target}::${target} SYSTEM INTERFACE ${root})
endforeach()

# Debian's package googletest holds the sources.
set(INSTALL_GTEST OFF)
add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
if(NOT TARGET GTest::gmock_main)
  add_library(GTest::gmock_main ALIAS gmock_main)
endif()
