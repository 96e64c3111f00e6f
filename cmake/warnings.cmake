# The options that all of our own code is built with. Warnings are errors.
add_library(pv_options INTERFACE)
target_compile_options(pv_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # A unique symbol would pin the library in the MTA: dlclose could never unload it.
  target_compile_options(pv_options INTERFACE -fno-gnu-unique)
endif()
if(PV_SANITIZE)
  target_compile_options(pv_options INTERFACE -fsanitize=${PV_SANITIZE} -fno-sanitize-recover=all
                                              -fno-omit-frame-pointer)
  target_link_options(pv_options INTERFACE -fsanitize=${PV_SANITIZE})
endif()
