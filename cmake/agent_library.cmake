# agent_library(<folder> SOURCES <file>... [DEPENDS <folder>...])
#
# One folder below src/ is one static library of the same name. It sees the headers of the folders it names in DEPENDS
# (and of those they name), and no others: an #include up the list does not compile. src/CMakeLists.txt adds the lowest
# folder first and a name that is no target yet is refused, so a circle cannot be configured.
function(agent_library name)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "SOURCES;DEPENDS")
  if(ARG_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "agent_library(${name}): unexpected ${ARG_UNPARSED_ARGUMENTS}")
  endif()
  foreach(dependency IN LISTS ARG_DEPENDS)
    if(NOT TARGET ${dependency})
      message(FATAL_ERROR "agent_library(${name}): ${dependency} is no folder below ${name}")
    endif()
  endforeach()

  add_library(${name} STATIC ${ARG_SOURCES})
  # A root that holds this folder alone, so that "<folder>/<header>" is found only through DEPENDS.
  set(root ${CMAKE_BINARY_DIR}/include/${name})
  file(MAKE_DIRECTORY ${root})
  file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${root}/${name} SYMBOLIC)
  target_include_directories(${name} PUBLIC ${root} ${PROJECT_SOURCE_DIR}/include)
  target_link_libraries(${name} PUBLIC ${ARG_DEPENDS} PRIVATE pv_options)
endfunction()
