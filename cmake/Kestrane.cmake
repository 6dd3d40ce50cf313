# What every target of the house shares: output folders, warnings, sanitizers, and the two helpers below.

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(KESTRANE_SHARE ${CMAKE_BINARY_DIR}/share/kestrane)

find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

add_compile_options(-Wall -Wextra -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  add_compile_options(-Wno-restrict)  # GCC 12 warns of its own std::string (GCC bug 105651)
endif()
if(KESTRANE_SANITIZE)
  add_compile_options(-fsanitize=${KESTRANE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${KESTRANE_SANITIZE})
  add_compile_options(-Wno-maybe-uninitialized)  # GCC warns of std::regex when it is instrumented
endif()

# kestrane_library(<name> <standard> [EXCLUDE <regex>])
# The static library of this folder: every .cpp below it.
function(kestrane_library name standard)
  cmake_parse_arguments(arg "" "EXCLUDE" "" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.hpp
                                              ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  list(FILTER sources EXCLUDE REGEX "/node_modules/")
  if(arg_EXCLUDE)
    list(FILTER sources EXCLUDE REGEX "${arg_EXCLUDE}")
  endif()
  add_library(${name} STATIC ${sources})
  target_compile_features(${name} PUBLIC cxx_std_${standard})
endfunction()

# kestrane_share(<folder> <as>)
# Makes a source folder reachable as share/kestrane/<as> beside the programs, as an installation would.
function(kestrane_share folder as)
  file(MAKE_DIRECTORY ${KESTRANE_SHARE})
  file(CREATE_LINK ${folder} ${KESTRANE_SHARE}/${as} SYMBOLIC)
endfunction()
