# Runs one script with the ravelin program and compares what it did with the files beside it:
#   NAME.out   standard output (required)
#   NAME.err   standard error (empty when absent)
#   NAME.code  the exit code (0 when absent)
#   NAME.args  the script's arguments, one a line
# Usage: cmake -DPROGRAM=... -DSCRIPT=dir/NAME.vbs [-DEMULATOR=wine] -P run_script_test.cmake
# The script runs in its own folder under its bare file name, so error texts do not depend on
# where the checkout is. Line ends are compared as line feeds (the Windows build writes CR LF).
cmake_minimum_required(VERSION 3.25)

get_filename_component(folder "${SCRIPT}" DIRECTORY)
get_filename_component(name "${SCRIPT}" NAME_WE)
get_filename_component(file "${SCRIPT}" NAME)
set(base "${folder}/${name}")

set(arguments)
if(EXISTS "${base}.args")
  file(STRINGS "${base}.args" arguments ENCODING UTF-8)
endif()

execute_process(
  COMMAND ${EMULATOR} "${PROGRAM}" "${file}" ${arguments}
  WORKING_DIRECTORY "${folder}"
  OUTPUT_VARIABLE actual_out
  ERROR_VARIABLE actual_err
  RESULT_VARIABLE actual_code
  TIMEOUT 60)

function(read_expected suffix result)
  set(text "")
  if(EXISTS "${base}.${suffix}")
    file(READ "${base}.${suffix}" text)
  endif()
  string(REPLACE "\r\n" "\n" text "${text}")
  set(${result} "${text}" PARENT_SCOPE)
endfunction()

read_expected(out expected_out)
read_expected(err expected_err)
read_expected(code expected_code)
string(STRIP "${expected_code}" expected_code)
if(expected_code STREQUAL "")
  set(expected_code 0)
endif()
string(REPLACE "\r\n" "\n" actual_out "${actual_out}")
string(REPLACE "\r\n" "\n" actual_err "${actual_err}")

set(failures "")
if(NOT actual_out STREQUAL expected_out)
  string(APPEND failures "standard output differs.\n--- expected\n${expected_out}--- actual\n${actual_out}---\n")
endif()
# Under an emulator, standard error may carry the emulator's own messages: compare it only
# where the script is expected to write there.
if(NOT actual_err STREQUAL expected_err AND (NOT EMULATOR OR EXISTS "${base}.err"))
  string(APPEND failures "standard error differs.\n--- expected\n${expected_err}--- actual\n${actual_err}---\n")
endif()
if(NOT actual_code STREQUAL expected_code)
  string(APPEND failures "exit code ${actual_code}, expected ${expected_code}\n")
endif()
if(failures)
  message(FATAL_ERROR "${file}: ${failures}")
endif()
