# One static library per folder of src/, all made the same way.

find_package(Threads REQUIRED)

add_library(velmora_options INTERFACE)
target_compile_features(velmora_options INTERFACE cxx_std_23)
# The sound is defined sample by sample: no contraction into fused multiply-adds, no fast maths.
target_compile_options(velmora_options INTERFACE -ffp-contract=off)

# Of files that are compiled as one, each hides names of the others.
set(shadow -Wshadow)
if(CMAKE_UNITY_BUILD)
  set(shadow -Wshadow=local)
endif()
add_library(velmora_warnings INTERFACE)
target_compile_options(
  velmora_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion ${shadow}
                             $<$<BOOL:${VELMORA_WERROR}>:-Werror>)

# velmora_library(<name> SOURCES <file>... [LINKS <target>...] [PRIVATE_LINKS <target>...])
# makes velmora_<name> with the alias velmora::<name>; includes are written from src/.
function(velmora_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS;PRIVATE_LINKS")
  set(target velmora_${name})
  add_library(${target} STATIC ${arg_SOURCES})
  add_library(velmora::${name} ALIAS ${target})
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF POSITION_INDEPENDENT_CODE ON)
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(
    ${target}
    PUBLIC velmora_options Threads::Threads ${arg_LINKS}
    PRIVATE $<BUILD_INTERFACE:velmora_warnings> ${arg_PRIVATE_LINKS})
endfunction()

# velmora_interface(<name> [LINKS <target>...]) is the same for a folder of headers only.
function(velmora_interface name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LINKS")
  set(target velmora_${name})
  add_library(${target} INTERFACE)
  add_library(velmora::${name} ALIAS ${target})
  target_include_directories(${target} INTERFACE ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${target} INTERFACE velmora_options Threads::Threads ${arg_LINKS})
endfunction()

# velmora_program(<name> SOURCES <file>... [LINKS <target>...])
function(velmora_program name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS")
  add_executable(${name} ${arg_SOURCES})
  set_target_properties(${name} PROPERTIES CXX_EXTENSIONS OFF)
  target_link_libraries(${name} PRIVATE velmora_options velmora_warnings ${arg_LINKS})
endfunction()
