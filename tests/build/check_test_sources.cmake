# Every *_test.cpp below FOLDER must stand in LISTED, paths from FOLDER with bars between them.

cmake_minimum_required(VERSION 3.25)

string(REPLACE "|" ";" listed "${LISTED}")
file(GLOB_RECURSE sources RELATIVE "${FOLDER}" "${FOLDER}/*_test.cpp")
foreach(source IN LISTS sources)
  if(NOT source IN_LIST listed)
    message(SEND_ERROR "tests/${source} stands in no list of tests/CMakeLists.txt")
  endif()
endforeach()
