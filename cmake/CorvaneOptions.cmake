# Compiler settings shared by every target, and the function that makes a module.

option(CORVANE_BENCHMARKS "Build the programs in Benchmarks/" ON)
set(CORVANE_SANITIZER "" CACHE STRING "address (with undefined behaviour) or thread")
# What a build says of itself (docs/formats/info.md).
set(CORVANE_BUILD_NUMBER "1" CACHE STRING "Grows with every release, also of the same version")
set(CORVANE_UPDATE_MANIFEST_URL "" CACHE STRING "Where the manifest of the newest release lies, over HTTP or HTTPS")
set(CORVANE_UPDATE_SYSTEM "debian" CACHE STRING "The distribution whose versions that manifest speaks of")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(CORVANE_CCACHE ccache)
if(CORVANE_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CORVANE_CCACHE}")
endif()

add_library(CorvaneCompileOptions INTERFACE)
target_compile_options(CorvaneCompileOptions INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align
  -Wold-style-cast -Wimplicit-fallthrough -Wnull-dereference -Werror
  # GCC 12 reports these two falsely deep inside the standard library when it inlines.
  -Wno-error=null-dereference -Wno-error=maybe-uninitialized)
target_compile_definitions(CorvaneCompileOptions INTERFACE
  QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(CORVANE_SANITIZER STREQUAL "address")
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
elseif(CORVANE_SANITIZER STREQUAL "thread")
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  add_link_options(-fsanitize=thread)
endif()

# corvane_module(NAME SOURCES... LINKS...): one static library per module. It sees only what it links; the include
# rule that the compiler cannot check is checked by Tests/Lint (see docs/architecture.md).
function(corvane_module name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}/Sources")
  target_link_libraries(${name} PUBLIC ${ARG_LINKS} PRIVATE CorvaneCompileOptions ${ARG_PRIVATE_LINKS})
  set_target_properties(${name} PROPERTIES AUTOMOC ON POSITION_INDEPENDENT_CODE ON)
endfunction()

# corvane_program(NAME SOURCES... LINKS...): an executable of the product.
function(corvane_program name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/Sources")
  target_link_libraries(${name} PRIVATE CorvaneCompileOptions ${ARG_LINKS})
  set_target_properties(${name} PROPERTIES AUTOMOC ON)
endfunction()
