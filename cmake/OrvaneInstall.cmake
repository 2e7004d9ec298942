# What is installed where, in components that become packages: runtime (the library), development, tool, operator.
# The library looks for its classifier, texts and modules beside its real file, so all of these lie in one private
# folder, named by the soname's version so that two versions may be installed together. Links make the library and
# the programs known under their usual names.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

if(WIN32)
  set(private ${CMAKE_INSTALL_BINDIR})
  set(data ${CMAKE_INSTALL_BINDIR})
  set(examples examples)
else()
  set(private ${CMAKE_INSTALL_LIBDIR}/orvane-${PROJECT_VERSION_MAJOR})
  set(data ${CMAKE_INSTALL_DATADIR}/orvane-${PROJECT_VERSION_MAJOR})
  set(examples ${CMAKE_INSTALL_DATADIR}/doc/liborvane-dev/examples)
endif()
set(ORVANE_ZSH_DIR ${CMAKE_INSTALL_DATADIR}/zsh/site-functions CACHE STRING "Where zsh looks for completions")
set(packaging ${PROJECT_SOURCE_DIR}/packaging)

# orvane_install_link(component link target): a symbolic link; both paths are relative to the prefix.
function(orvane_install_link component link target)
  get_filename_component(folder /${link} DIRECTORY)
  file(RELATIVE_PATH target ${folder} /${target})
  install(CODE "
    set(link \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${link}\")
    get_filename_component(folder \${link} DIRECTORY)
    file(MAKE_DIRECTORY \${folder})
    file(CREATE_LINK ${target} \${link} SYMBOLIC)
    message(STATUS \"Installing: \${link}\")" COMPONENT ${component})
endfunction()

# orvane_install_program(component target name): a program and, off Windows, the link to it.
function(orvane_install_program component target name)
  install(TARGETS ${target} RUNTIME DESTINATION ${private} COMPONENT ${component})
  if(NOT WIN32)
    orvane_install_link(${component} ${CMAKE_INSTALL_BINDIR}/${name} ${private}/${name})
    install(FILES ${packaging}/man/${name}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT ${component})
    install(FILES ${packaging}/completions/${name}.bash RENAME ${name} COMPONENT ${component}
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
    install(FILES ${packaging}/completions/_${name} DESTINATION ${ORVANE_ZSH_DIR} COMPONENT ${component})
    install(FILES ${packaging}/completions/${name}.fish COMPONENT ${component}
            DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
  endif()
endfunction()

# The library with what belongs beside it.
set(library ${CMAKE_INSTALL_LIBDIR}/liborvane.so)
install(TARGETS orvane RUNTIME DESTINATION ${private} COMPONENT runtime
                       LIBRARY DESTINATION ${private} COMPONENT runtime NAMELINK_SKIP
                       ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
file(GLOB languages CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/examples/languages/*.txt)
install(FILES ${PROJECT_SOURCE_DIR}/data/Orvane.dat ${languages} DESTINATION ${data} COMPONENT runtime)
if(NOT WIN32)
  foreach(file IN ITEMS ${PROJECT_SOURCE_DIR}/data/Orvane.dat ${languages})
    get_filename_component(name ${file} NAME)
    orvane_install_link(runtime ${private}/${name} ${data}/${name})
  endforeach()
  orvane_install_link(runtime ${library}.${PROJECT_VERSION_MAJOR} ${private}/liborvane.so.${PROJECT_VERSION})
  orvane_install_link(development ${library} ${library}.${PROJECT_VERSION_MAJOR})
endif()

# What a host is built with.
install(FILES include/orvane/orvane.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/orvane COMPONENT development)
install(FILES examples/README.md DESTINATION ${examples} COMPONENT development)
install(DIRECTORY examples/host-linked examples/host-c examples/host-cpp examples/host-csharp
        DESTINATION ${examples} COMPONENT development FILES_MATCHING
        PATTERN *.c PATTERN *.cpp PATTERN *.h PATTERN *.cs PATTERN *.config PATTERN CMakeLists.txt PATTERN Makefile)
install(FILES examples/languages/README.md RENAME languages.md DESTINATION ${examples} COMPONENT development)
install(FILES examples/skins/Ok.bmp examples/skins/Cancel.xyz examples/skins/Contrast.bmp examples/skins/README.md
        DESTINATION ${examples}/skins COMPONENT development)
set(config ${CMAKE_CURRENT_BINARY_DIR}/package)
set(config_folder ${CMAKE_INSTALL_LIBDIR}/cmake/Orvane)
configure_package_config_file(${packaging}/templates/OrvaneConfig.cmake.in ${config}/OrvaneConfig.cmake
                              INSTALL_DESTINATION ${config_folder} NO_CHECK_REQUIRED_COMPONENTS_MACRO
                              PATH_VARS CMAKE_INSTALL_INCLUDEDIR CMAKE_INSTALL_LIBDIR CMAKE_INSTALL_BINDIR)
write_basic_package_version_file(${config}/OrvaneConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${config}/OrvaneConfig.cmake ${config}/OrvaneConfigVersion.cmake DESTINATION ${config_folder}
        COMPONENT development)
if(NOT WIN32)
  # A system's own folders by their names, so that pkg-config leaves them out; any other prefix may be moved.
  if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    set(pc_prefix /usr)
  else()
    file(RELATIVE_PATH pc_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
    string(REGEX REPLACE "/$" "" pc_prefix "\${pcfiledir}/${pc_prefix}")
  endif()
  configure_file(${packaging}/templates/orvane.pc.in ${config}/orvane.pc @ONLY)
  install(FILES ${config}/orvane.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endif()

if(TARGET orvane_tool)
  orvane_install_program(tool orvane_tool orvane)
  install(FILES data/documents.toml DESTINATION ${data} COMPONENT tool)
  if(NOT WIN32)
    orvane_install_link(tool ${private}/documents.toml ${data}/documents.toml)
    install(FILES docs/cluster.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/orvane COMPONENT tool)
    install(PROGRAMS examples/cluster/parallel.sh examples/cluster/slurm.sh examples/cluster/slurm_join.sh
                     examples/cluster/dask_portraits.py
            DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/orvane/examples/cluster COMPONENT tool)
  endif()
endif()
if(TARGET orvane_operator)
  orvane_install_program(operator orvane_operator orvane-operator)
endif()
foreach(module IN ITEMS orvane_window orvane_camera)
  if(TARGET ${module})
    install(TARGETS ${module} LIBRARY DESTINATION ${private} COMPONENT operator)
  endif()
endforeach()
