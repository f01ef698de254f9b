# What users get: `cmake --install` puts it in place, and CPack makes packages of it (./package makes all of them).

# The man page and the completions come from the command itself; a cross build takes those of the native one.
set(MARVANE_SHELLS bash zsh fish powershell)
if(CMAKE_CROSSCOMPILING)
  set(MARVANE_GENERATED ${CMAKE_BINARY_DIR}/../native/generated CACHE PATH "Man page and completions of a native build")
else()
  set(MARVANE_GENERATED ${CMAKE_BINARY_DIR}/generated)
  add_custom_command(OUTPUT ${MARVANE_GENERATED}/marvane.1.gz
                     COMMAND ${CMAKE_COMMAND} -E make_directory ${MARVANE_GENERATED}
                     COMMAND marvane man | gzip -9n > ${MARVANE_GENERATED}/marvane.1.gz
                     DEPENDS marvane VERBATIM)
  foreach(shell ${MARVANE_SHELLS})
    add_custom_command(OUTPUT ${MARVANE_GENERATED}/marvane.${shell}
                       COMMAND ${CMAKE_COMMAND} -E make_directory ${MARVANE_GENERATED}
                       COMMAND marvane completion ${shell} > ${MARVANE_GENERATED}/marvane.${shell}
                       DEPENDS marvane VERBATIM)
    list(APPEND MARVANE_COMPLETIONS ${MARVANE_GENERATED}/marvane.${shell})
  endforeach()
  add_custom_target(generated ALL DEPENDS ${MARVANE_GENERATED}/marvane.1.gz ${MARVANE_COMPLETIONS})
endif()

# What ./package builds.
add_custom_target(delivered DEPENDS Marvane SimVci diag_session marvane)
if(NOT CMAKE_CROSSCOMPILING)
  add_dependencies(delivered generated)
endif()

if(WIN32)
  # A folder for each width; the command of 64 bits at the top too, from where it finds both.
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(MARVANE_FOLDER x64)
    install(TARGETS marvane RUNTIME DESTINATION .)
    install(FILES README.md CHANGELOG.md examples/D_PDU_API_CFG.xml DESTINATION .)
    install(DIRECTORY docs DESTINATION .)
    foreach(shell bash zsh fish)
      install(FILES ${MARVANE_GENERATED}/marvane.${shell} DESTINATION completions)
    endforeach()
    install(FILES ${MARVANE_GENERATED}/marvane.powershell DESTINATION completions RENAME marvane.ps1)
  else()
    set(MARVANE_FOLDER x86)
  endif()
  install(TARGETS Marvane SimVci diag_session marvane RUNTIME DESTINATION ${MARVANE_FOLDER})
else()
  file(READ examples/D_PDU_API_CFG.xml sample)
  string(REPLACE "SimVci.dll" "libSimVci.so" sample "${sample}")
  file(CONFIGURE OUTPUT sample/D_PDU_API_CFG.xml CONTENT "${sample}" @ONLY NEWLINE_STYLE UNIX)
  install(TARGETS marvane RUNTIME DESTINATION bin)
  install(TARGETS Marvane SimVci LIBRARY DESTINATION lib/marvane)
  install(TARGETS diag_session RUNTIME DESTINATION lib/marvane)
  install(FILES README.md CHANGELOG.md ${CMAKE_CURRENT_BINARY_DIR}/sample/D_PDU_API_CFG.xml DESTINATION share/doc/marvane)
  install(DIRECTORY docs DESTINATION share/doc/marvane)
  install(FILES ${MARVANE_GENERATED}/marvane.1.gz DESTINATION share/man/man1)
  install(FILES ${MARVANE_GENERATED}/marvane.bash DESTINATION share/bash-completion/completions RENAME marvane)
  install(FILES ${MARVANE_GENERATED}/marvane.zsh DESTINATION share/zsh/vendor-completions RENAME _marvane)
  install(FILES ${MARVANE_GENERATED}/marvane.fish DESTINATION share/fish/vendor_completions.d)
endif()

set(CPACK_PACKAGE_NAME marvane)
set(CPACK_PACKAGE_VENDOR Marvane)
set(CPACK_PACKAGE_CONTACT "The Marvane developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "D-PDU API logging proxy, and the command that sets it up and reads its logs")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME marvane-${PROJECT_VERSION}-windows)
else()
  set(CPACK_GENERATOR TGZ DEB)
  set(CPACK_PACKAGE_FILE_NAME marvane-${PROJECT_VERSION}-linux)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SECTION utils)
  # ./package finds the dependencies: with CPack's way of it come scripts that tell the loader of lib/marvane.
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS OFF)
  set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
endif()
include(CPack)
