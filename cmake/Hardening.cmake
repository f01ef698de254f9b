# harden(target): enables the security guards of compiler and linker, since the library runs in other people's
# processes. Not under sanitizers, which have guards of their own that these would disturb.
function(harden target)
  if(MARVANE_SANITIZE)
    return()
  endif()
  target_compile_options(${target} PRIVATE -fstack-protector-strong)
  target_link_options(${target} PUBLIC -fstack-protector-strong) # Links the guard's runtime where it is a separate library.
  if(WIN32)
    target_link_options(${target} PRIVATE -Wl,--dynamicbase -Wl,--nxcompat)
    if(CMAKE_SIZEOF_VOID_P EQUAL 8)
      target_link_options(${target} PRIVATE -Wl,--high-entropy-va)
    endif()
  else()
    target_compile_definitions(${target} PRIVATE _FORTIFY_SOURCE=2)
    target_link_options(${target} PRIVATE -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
  endif()
endfunction()
