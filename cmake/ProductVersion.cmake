# set_product_version(target version description): gives a shared library or program its four version numbers, as
# a version resource on Windows and as an ELF note elsewhere.
function(set_product_version target version description)
  string(REPLACE "." ";" numbers "${version}")
  list(GET numbers 0 VERSION_0)
  list(GET numbers 1 VERSION_1)
  list(GET numbers 2 VERSION_2)
  list(GET numbers 3 VERSION_3)
  set(VERSION_DESCRIPTION "${description}")
  set(VERSION_NAME "${target}")
  get_target_property(type ${target} TYPE)
  if(type STREQUAL EXECUTABLE)
    set(VERSION_FILE_TYPE VFT_APP)
    set(VERSION_FILE "${target}.exe")
  else()
    set(VERSION_FILE_TYPE VFT_DLL)
    set(VERSION_FILE "${target}.dll")
  endif()
  if(WIN32)
    enable_language(RC)
    set(source ${CMAKE_CURRENT_BINARY_DIR}/${target}_version.rc)
    configure_file(${CMAKE_SOURCE_DIR}/cmake/product_version.rc.in ${source} @ONLY)
  else()
    set(source ${CMAKE_CURRENT_BINARY_DIR}/${target}_version.cpp)
    configure_file(${CMAKE_SOURCE_DIR}/cmake/product_version.cpp.in ${source} @ONLY)
  endif()
  target_sources(${target} PRIVATE ${source})
endfunction()

# exact_exports(target): the library exports the functions marked with PDU_API and nothing else; on Windows its
# file name gets no prefix.
function(exact_exports target)
  if(WIN32)
    set_target_properties(${target} PROPERTIES PREFIX "" IMPORT_PREFIX "")
    target_link_options(${target} PRIVATE -Wl,--exclude-all-symbols)
    undecorated_exports(${target})
  else()
    target_link_options(${target} PRIVATE -Wl,--version-script=${CMAKE_SOURCE_DIR}/cmake/exports.map
                        -Wl,-Bsymbolic)
    set_target_properties(${target} PROPERTIES LINK_DEPENDS ${CMAKE_SOURCE_DIR}/cmake/exports.map)
  endif()
endfunction()

# undecorated_exports(target): the names of exported stdcall functions are without the "@8" that 32-bit compilers
# append, as applications look them up.
function(undecorated_exports target)
  if(WIN32 AND CMAKE_SIZEOF_VOID_P EQUAL 4)
    target_link_options(${target} PRIVATE -Wl,--kill-at)
  endif()
endfunction()

# stdcall_import_library(target definitions): replaces the import library of the linker, which has no "@8" in its names
# either, by one that 32-bit programs can link with.
function(stdcall_import_library target definitions)
  if(WIN32 AND CMAKE_SIZEOF_VOID_P EQUAL 4)
    add_custom_command(TARGET ${target} POST_BUILD
                       COMMAND ${CMAKE_DLLTOOL} --kill-at --input-def ${definitions}
                               --output-lib $<TARGET_LINKER_FILE:${target}> VERBATIM)
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${definitions})
  endif()
endfunction()
