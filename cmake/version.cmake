# SPDX-License-Identifier: GPL-3.0-or-later
# cmake -DSOURCE_DIR=… [-DOUTPUT=…] -P version.cmake: writes the header of the version texts. Without
# OUTPUT it shows them on standard error: version text, day of the last commit, version of a package.
#
# Runs in every build and touches the header only when a text changes.
cmake_minimum_required(VERSION 3.25)

file(STRINGS ${SOURCE_DIR}/VERSION tag LIMIT_COUNT 1)
find_program(GIT git)

# git_says(VARIABLE ARGUMENT...): the output of a git command, empty when it fails.
function(git_says variable)
  set(answer "")
  # A tarball unpacked inside some other repository must not ask that one.
  if(GIT AND EXISTS ${SOURCE_DIR}/.git)
    execute_process(COMMAND ${CMAKE_COMMAND} -E env TZ=UTC0 ${GIT} -C ${SOURCE_DIR} ${ARGN}
                    OUTPUT_VARIABLE answer ERROR_QUIET OUTPUT_STRIP_TRAILING_WHITESPACE)
  endif()
  set(${variable} "${answer}" PARENT_SCOPE)
endfunction()

git_says(version describe --tags --always --dirty --long)
git_says(branch symbolic-ref --short -q HEAD)
git_says(date log -1 --date=format-local:%Y-%m-%d --format=%cd)

if(version MATCHES "^[0-9a-f]+(-dirty)?$")  # no tag: VERSION stands in for it
  git_says(count rev-list --count HEAD)
  set(version "${tag}-${count}-g${version}")
elseif(version STREQUAL "")
  set(version "${tag}-0-unknown")
  # "VERSION DATE" in a tarball of `make dist`, "HASH DATE" in an archive that git made, else the
  # placeholder.
  file(STRINGS ${SOURCE_DIR}/cmake/archive_info.txt archive LIMIT_COUNT 1)
  if(archive MATCHES "^(v[^ ]+|[0-9a-f]+) ([0-9]+-[0-9]+-[0-9]+)$")
    set(version ${CMAKE_MATCH_1})
    set(date ${CMAKE_MATCH_2})
    if(NOT version MATCHES "^v")
      set(version "${tag}-0-g${version}")
    endif()
  endif()
endif()
if(date STREQUAL "")
  set(date unknown)
endif()
if(NOT OUTPUT)
  # A commit after a tag sorts behind it, a candidate for a release before the release.
  string(REGEX REPLACE "^v(.*)-([0-9]+)-g?[0-9a-z]+(-dirty)?$" "\\1+\\2" package "${version}")
  string(REGEX REPLACE "[+]0$" "" package "${package}")
  string(REPLACE "-" "~" package "${package}")
  message(NOTICE "${version} ${date} ${package}")
  return()
endif()
if(DEFINED ENV{SOURCE_DATE_EPOCH})
  string(TIMESTAMP date "%Y-%m-%d" UTC)  # takes its time from that variable
endif()
if(branch STREQUAL "")
  set(branch unknown)
endif()

file(CONFIGURE OUTPUT ${OUTPUT} @ONLY CONTENT
"// SPDX-License-Identifier: GPL-3.0-or-later
// Written by cmake/version.cmake.
#pragma once

constexpr const char* kVersionText = \"@version@\";
constexpr const char* kBuildDate = \"@date@\";
constexpr const char* kScmBranch = \"@branch@\";
")
