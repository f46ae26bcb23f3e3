# What every target of this project is compiled with.

if(ORVEL_SANITIZE)
  # Whole-program: code of the project that is not instrumented would hide faults from the rest.
  # The last flag keeps stack traces readable.
  add_compile_options(-fsanitize=${ORVEL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${ORVEL_SANITIZE})
endif()

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# Sets the language level, the warnings and the include root ("orvel/core/guid.h") of `target`.
function(orvel_configure_target target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
    -Wcast-qual -Wnon-virtual-dtor -Woverloaded-virtual -Wundef -Wunused
    $<$<BOOL:${ORVEL_WARNINGS_AS_ERRORS}>:-Werror>)
  # An optimising g++ 12 takes copying the unused rest of a boost::function's buffer for a read, and
  # a character put before a string for a copy onto itself. The Debug build, which does not, keeps
  # the warnings.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
    target_compile_options(${target} PRIVATE -Wno-uninitialized -Wno-maybe-uninitialized -Wno-restrict)
  endif()
endfunction()
