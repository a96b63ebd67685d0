# Replays one scenario with the cross-built marl-sim under user-mode emulation
# and compares its normalized transcript with the checked one. The checked
# transcripts were taken on a 64-bit host, where the daemon's tables are 32 and
# 184 bytes; on the 32-bit target they must be 20 and 96, and everything else
# must be the same.
#   cmake -DEMULATOR=qemu;-L;SYSROOT -DSIM=... -DFSMAP=... -DSCENARIO=X.json
#         -DEXPECTED=X.expected -DWORK=DIR -DSHIMS=DIR -P ReplayScenarioOnTarget.cmake
foreach(var EMULATOR SIM FSMAP SCENARIO EXPECTED WORK SHIMS)
  if(NOT DEFINED ${var})
    message(FATAL_ERROR "${var} is not set")
  endif()
endforeach()

file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
execute_process(
  COMMAND ${CMAKE_COMMAND} -E env --unset=MARL_DEVICE_DIR --unset=MARL_PLUGIN
          "PATH=${SHIMS}:$ENV{PATH}" "LD_PRELOAD=${FSMAP}"
          ${EMULATOR} ${SIM} run ${SCENARIO} --fast --normalized --device ${WORK}/device
  WORKING_DIRECTORY ${WORK}
  INPUT_FILE /dev/null
  OUTPUT_VARIABLE out
  ERROR_VARIABLE err
  RESULT_VARIABLE rc)
file(WRITE ${WORK}/transcript.txt "${out}")
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "marl-sim exited with ${rc}\nstderr:\n${err}")
endif()

set(target_tables [["daemonTable":{"size":20,"version":1},"engineTable":{"size":96,"version":1}]])
set(host_tables [["daemonTable":{"size":32,"version":1},"engineTable":{"size":184,"version":1}]])
file(READ ${EXPECTED} expected)
string(FIND "${expected}" "${host_tables}" expected_load)
string(FIND "${out}" "${target_tables}" target_load)
string(FIND "${out}" "${host_tables}" host_load)
if(NOT host_load EQUAL -1)
  message(FATAL_ERROR "the plug-in wrote the 64-bit table sizes on the 32-bit target")
endif()
if(NOT expected_load EQUAL -1 AND target_load EQUAL -1)
  message(FATAL_ERROR "the load did not report tables of 20 and 96 bytes:\n${out}")
endif()

string(REPLACE "${target_tables}" "${host_tables}" comparable "${out}")
# The platform's daemon feeds the audio by a timer, so how its chunks fall
# between the plug-in's calls depends on the machine's pace (emulation's most
# of all): its chunks, what the library saw of them and the recorder's silence
# are left out, as the host's replay test does.
file(READ ${SCENARIO} scenario_text)
string(JSON daemon ERROR_VARIABLE no_daemon GET "${scenario_text}" daemon)
if(daemon STREQUAL "platform")
  set(audio_lines "\n(call     MarlEngine_set_recording_data|speech   audio x|note     the audio has ended; the recorder gives silence)[^\n]*")
  string(REGEX REPLACE "${audio_lines}" "" expected "${expected}")
  string(REGEX REPLACE "${audio_lines}" "" comparable "${comparable}")
endif()
if(NOT comparable STREQUAL expected)
  file(WRITE ${WORK}/expected.txt "${expected}")
  file(WRITE ${WORK}/comparable.txt "${comparable}")
  execute_process(COMMAND diff -u ${WORK}/expected.txt ${WORK}/comparable.txt OUTPUT_VARIABLE difference)
  message(FATAL_ERROR "the transcript differs from ${EXPECTED}:\n${difference}\nstderr:\n${err}")
endif()
message(STATUS "same transcript as on the host; tables of 20 and 96 bytes")
