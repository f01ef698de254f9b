# set_product_version(target version description): gives a shared library its four version numbers, as a
# version resource on Windows and as an ELF note elsewhere.
function(set_product_version target version description)
  string(REPLACE "." ";" numbers "${version}")
  list(GET numbers 0 VERSION_0)
  list(GET numbers 1 VERSION_1)
  list(GET numbers 2 VERSION_2)
  list(GET numbers 3 VERSION_3)
  set(VERSION_DESCRIPTION "${description}")
  set(VERSION_NAME "${target}")
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
  else()
    target_link_options(${target} PRIVATE -Wl,--version-script=${CMAKE_SOURCE_DIR}/cmake/exports.map
                        -Wl,-Bsymbolic)
    set_target_properties(${target} PROPERTIES LINK_DEPENDS ${CMAKE_SOURCE_DIR}/cmake/exports.map)
  endif()
endfunction()
