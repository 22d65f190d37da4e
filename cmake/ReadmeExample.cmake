# Fails unless the README's C example is examples/show_calls.c byte for byte.
#   cmake -DREADME=... -DEXAMPLE=... -P ReadmeExample.cmake
file(READ ${README} readme)
file(READ ${EXAMPLE} example)
string(FIND "${readme}" "```c\n${example}```\n" at)
if(at EQUAL -1)
  message(FATAL_ERROR "the README's C example differs from ${EXAMPLE}")
endif()
