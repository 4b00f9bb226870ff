# SPDX-License-Identifier: GPL-3.0-or-later
# The flags of every target, and the three kinds of targets that the tree is made of.
include(CheckCXXSourceCompiles)

add_library(vantrel_flags INTERFACE)
target_compile_options(vantrel_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=${PROJECT_BINARY_DIR}=build)
target_compile_definitions(vantrel_flags INTERFACE
  _GNU_SOURCE _GLIBCXX_ASSERTIONS)
target_include_directories(vantrel_flags INTERFACE ${PROJECT_SOURCE_DIR})
if(VANTREL_WERROR)
  target_compile_options(vantrel_flags INTERFACE -Werror)
endif()
if(VANTREL_HARDEN)
  target_compile_options(vantrel_flags INTERFACE -fstack-protector-strong)
  target_link_options(vantrel_flags INTERFACE -Wl,-z,relro,-z,now)
  # Not a second time where the compiler or the flags of whoever builds have it, and not without
  # optimisation, which it needs.
  block()
    set(CMAKE_TRY_COMPILE_CONFIGURATION ${CMAKE_BUILD_TYPE})
    check_cxx_source_compiles("
      #if defined _FORTIFY_SOURCE || !defined __OPTIMIZE__
      #error
      #endif
      int main() {}" VANTREL_FORTIFY)
  endblock()
  if(VANTREL_FORTIFY AND NOT VANTREL_SANITIZE)
    target_compile_definitions(vantrel_flags INTERFACE _FORTIFY_SOURCE=2)
  endif()
endif()
if(VANTREL_SANITIZE)
  target_compile_options(vantrel_flags INTERFACE
    -fsanitize=${VANTREL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g)
  target_link_options(vantrel_flags INTERFACE -fsanitize=${VANTREL_SANITIZE})
  # g++ 12 sees uninitialised values where there are none once the sanitizers' checks are in.
  target_compile_options(vantrel_flags INTERFACE
    $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-maybe-uninitialized>)
endif()
if(VANTREL_COVERAGE)
  target_compile_options(vantrel_flags INTERFACE --coverage -fprofile-update=atomic)
  target_link_options(vantrel_flags INTERFACE --coverage)
endif()
if(VANTREL_FUZZ)
  target_compile_options(vantrel_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

# vantrel_library(NAME SOURCE...): the objects of one module. Programs take the objects whole,
# because a linker drops the self-registering modules of a static library.
define_property(GLOBAL PROPERTY VANTREL_LIBRARIES BRIEF_DOCS "Every vantrel_library, in order")
function(vantrel_library name)
  add_library(${name} OBJECT ${ARGN})
  target_link_libraries(${name} PUBLIC vantrel_flags)
  set_property(GLOBAL APPEND PROPERTY VANTREL_LIBRARIES ${name})
endfunction()

# vantrel_use(TARGET LIBRARY...): link the objects of these modules into a program.
function(vantrel_use target)
  target_link_libraries(${target} PRIVATE vantrel_flags)
  foreach(library IN LISTS ARGN)
    target_sources(${target} PRIVATE $<TARGET_OBJECTS:${library}>)
    target_include_directories(${target} PRIVATE
      $<TARGET_PROPERTY:${library},INTERFACE_INCLUDE_DIRECTORIES>)
    target_link_libraries(${target} PRIVATE
      $<TARGET_PROPERTY:${library},INTERFACE_LINK_LIBRARIES>)
  endforeach()
endfunction()

# vantrel_use_all(TARGET [REVERSED]): every module, in the reverse order on request.
function(vantrel_use_all target)
  get_property(libraries GLOBAL PROPERTY VANTREL_LIBRARIES)
  if("REVERSED" IN_LIST ARGN)
    list(REVERSE libraries)
  endif()
  vantrel_use(${target} ${libraries})
endfunction()
