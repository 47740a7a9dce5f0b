# run: runs a program and compares its output and its exit status with the expected ones.
# With CF_RENEW in the environment, the output becomes the expected output: then look at git diff.
# SPDX-License-Identifier: MIT
if(NOT INPUT)
  set(INPUT /dev/null)
endif()
execute_process(COMMAND ${COMMAND}
  INPUT_FILE ${INPUT} OUTPUT_FILE ${ACTUAL}.out ERROR_FILE ${ACTUAL}.err RESULT_VARIABLE result)
if(NOT result EQUAL RESULT)
  file(READ ${ACTUAL}.err said)
  message(FATAL_ERROR "exit status ${result} instead of ${RESULT}\n${said}")
endif()
foreach(channel out err)
  file(SIZE ${ACTUAL}.${channel} size)
  if(DEFINED ENV{CF_RENEW} AND size GREATER 0)
    file(COPY_FILE ${ACTUAL}.${channel} ${EXPECTED}.${channel})
  endif()
  execute_process(COMMAND diff -uN ${EXPECTED}.${channel} ${ACTUAL}.${channel}
    COMMAND_ERROR_IS_FATAL ANY)
endforeach()
