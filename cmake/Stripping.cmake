# deliver_stripped(target): moves the symbols of a library or program into a file beside it, FILE.debug, where
# debuggers find it by the name and checksum that the stripped file holds. (-p: without the time of the call.)
function(deliver_stripped target)
  if(MARVANE_SANITIZE OR MARVANE_COVERAGE OR NOT CMAKE_OBJCOPY)
    return()
  endif()
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${CMAKE_OBJCOPY} -p --only-keep-debug $<TARGET_FILE:${target}> $<TARGET_FILE:${target}>.debug
    COMMAND ${CMAKE_OBJCOPY} -p --strip-unneeded --add-gnu-debuglink=$<TARGET_FILE:${target}>.debug $<TARGET_FILE:${target}>
    VERBATIM)
endfunction()
