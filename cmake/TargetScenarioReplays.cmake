# Cross builds only: every checked scenario replayed by the target's marl-sim
# under emulation. The GoogleTest replay runs marl-sim as a child process, which
# user-mode emulation cannot start; these run it under the emulator directly.
# The virtual appliance's launch handlers are host shell scripts; the tools they
# call are target programs, run through the emulator.
foreach(tool vconftool marl-device)
  if(TARGET ${tool})
    list(JOIN CMAKE_CROSSCOMPILING_EMULATOR " " emulator)
    file(GENERATE OUTPUT ${MARL_TARGET_SHIMS}/${tool}
      CONTENT "#!/bin/sh\nexec ${emulator} $<TARGET_FILE:${tool}> \"$@\"\n"
      FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
  endif()
endforeach()

file(GLOB scenarios CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/scenarios/*.json)
foreach(scenario ${scenarios})
  get_filename_component(name ${scenario} NAME_WE)
  string(REPLACE "-" ";" parts "${name}")
  set(camel "")
  foreach(part ${parts})
    string(SUBSTRING "${part}" 0 1 first)
    string(SUBSTRING "${part}" 1 -1 rest)
    string(TOUPPER "${first}" first)
    string(APPEND camel "${first}${rest}")
  endforeach()
  add_test(NAME TargetScenarioReplay.${camel}
    COMMAND ${CMAKE_COMMAND}
      "-DEMULATOR=${CMAKE_CROSSCOMPILING_EMULATOR}"
      -DSIM=$<TARGET_FILE:marl-sim>
      -DFSMAP=$<TARGET_FILE:fsmap>
      -DSCENARIO=${scenario}
      -DEXPECTED=${PROJECT_SOURCE_DIR}/scenarios/${name}.expected
      -DWORK=${CMAKE_BINARY_DIR}/test-tmp/target-replay/${name}
      -DSHIMS=${MARL_TARGET_SHIMS}
      -P ${PROJECT_SOURCE_DIR}/cmake/ReplayScenarioOnTarget.cmake)
  set_tests_properties(TargetScenarioReplay.${camel} PROPERTIES LABELS target TIMEOUT 300)
endforeach()
