# harden(target): the guards that compiler and linker offer, for what runs in somebody else's process. The
# sanitizers bring guards of their own, and these would be in their way.
function(harden target)
  if(MARVANE_SANITIZE)
    return()
  endif()
  target_compile_options(${target} PRIVATE -fstack-protector-strong)
  target_link_options(${target} PUBLIC -fstack-protector-strong) # The runtime of the guard, where it is a library.
  if(WIN32)
    target_link_options(${target} PRIVATE -Wl,--dynamicbase -Wl,--nxcompat -Wl,--high-entropy-va)
  else()
    target_compile_definitions(${target} PRIVATE _FORTIFY_SOURCE=2)
    target_link_options(${target} PRIVATE -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
  endif()
endfunction()
