# Compiler settings shared by every target of the tree: C++20, warnings as errors, sanitizers.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

add_library(kivra_options INTERFACE)
target_include_directories(kivra_options INTERFACE ${PROJECT_SOURCE_DIR})
if(WIN32)
  target_compile_definitions(kivra_options INTERFACE UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX
    _WIN32_WINNT=0x0A00)
endif()

if(MSVC)
  target_compile_options(kivra_options INTERFACE /W4 /WX /permissive- /utf-8 /Zc:__cplusplus)
else()
  target_compile_options(kivra_options INTERFACE -Wall -Wextra -Wpedantic -Werror -Wshadow
    -Wconversion -Wsign-conversion -Wnon-virtual-dtor -Wold-style-cast -Wcast-align
    -Woverloaded-virtual -Wnull-dereference -Wdouble-promotion -Wimplicit-fallthrough)
  # When optimising, GCC's flow analysis reports impossible null dereferences and overlapping copies
  # inside its own string class.
  target_compile_options(kivra_options INTERFACE
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<NOT:$<CONFIG:Debug>>>:-Wno-null-dereference;-Wno-restrict>)
endif()

# For every target, the test framework included: ThreadSanitizer needs to see all of the program.
if(KIVRA_SANITIZE)
  add_compile_options(-fsanitize=${KIVRA_SANITIZE} -fno-omit-frame-pointer -O1)
  add_link_options(-fsanitize=${KIVRA_SANITIZE})
  if(KIVRA_SANITIZE MATCHES "undefined")
    add_compile_options(-fno-sanitize-recover=all)
  endif()
endif()

if(MINGW)
  # One self-contained program: only DLLs that every Windows has are imported.
  target_link_options(kivra_options INTERFACE -static -static-libgcc -static-libstdc++)
endif()

# kivra_library(<folder> SOURCES ... [WINDOWS ...] [POSIX ...] [LINKS ...])
# One static library per folder; LINKS names the folders below it that it may include.
function(kivra_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;WINDOWS;POSIX;LINKS" ${ARGN})
  set(sources ${ARG_SOURCES})
  if(WIN32)
    list(APPEND sources ${ARG_WINDOWS})
  else()
    list(APPEND sources ${ARG_POSIX})
  endif()
  add_library(kivra_${name} STATIC ${sources})
  list(TRANSFORM ARG_LINKS PREPEND kivra_)
  target_link_libraries(kivra_${name} PUBLIC kivra_options ${ARG_LINKS})
  add_dependencies(kivra_${name} check_floors)
endfunction()
