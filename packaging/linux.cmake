# What `cmake --install` puts where on Linux, and the Debian package of it.
include(GNUInstallDirs)
include(${CMAKE_CURRENT_LIST_DIR}/icon.cmake)
set(id ${PELMARIX_BUNDLE_IDENTIFIER})
set(documents ${CMAKE_INSTALL_DATADIR}/doc/pelmarix)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The Pelmarix authors <maintainers@pelmarix.example>")

# The release day's first second is the time of every file in the package, so that each build gives the same one.
execute_process(COMMAND date --utc --date=${PELMARIX_RELEASE_DATE} +%s
                OUTPUT_VARIABLE PELMARIX_RELEASE_TIME OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C date --utc --date=${PELMARIX_RELEASE_DATE} --rfc-email
                OUTPUT_VARIABLE PELMARIX_RELEASE_DATE_RFC OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)

foreach(file pelmarix.desktop pelmarix.metainfo.xml pelmarix.1 pelmarix-open.1)
  configure_file(linux/${file}.in ${file} @ONLY)
endforeach()
configure_file(debian/changelog.in changelog.Debian @ONLY)

# Debian wants manual pages and change logs compressed, without name and time.
function(pelmarix_install_compressed source name destination)
  set(compressed ${CMAKE_CURRENT_BINARY_DIR}/compressed/${name}.gz)
  add_custom_command(OUTPUT ${compressed} DEPENDS ${source}
    COMMAND gzip --best --no-name --stdout ${source} > ${compressed})
  set_property(TARGET pelmarix_package_files APPEND PROPERTY SOURCES ${compressed})
  install(FILES ${compressed} DESTINATION ${destination})
endfunction()
file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/compressed)
add_custom_target(pelmarix_package_files ALL)
pelmarix_install_compressed(${CMAKE_CURRENT_BINARY_DIR}/pelmarix.1 pelmarix.1 ${CMAKE_INSTALL_MANDIR}/man1)
pelmarix_install_compressed(${CMAKE_CURRENT_BINARY_DIR}/pelmarix-open.1 pelmarix-open.1 ${CMAKE_INSTALL_MANDIR}/man1)
pelmarix_install_compressed(${PROJECT_SOURCE_DIR}/lsbom/lsbom.1 lsbom.1 ${CMAKE_INSTALL_MANDIR}/man1)
pelmarix_install_compressed(${PROJECT_SOURCE_DIR}/CHANGELOG.md changelog ${documents})
pelmarix_install_compressed(${CMAKE_CURRENT_BINARY_DIR}/changelog.Debian changelog.Debian ${documents})

set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
foreach(size 16 22 24 32 48 64 128 256 512)
  set(icon ${CMAKE_CURRENT_BINARY_DIR}/icons/${size}.png)
  pelmarix_add_icon(${size} ${icon})
  set_property(TARGET pelmarix_package_files APPEND PROPERTY SOURCES ${icon})
  install(FILES ${icon} DESTINATION ${icons}/${size}x${size}/apps RENAME ${id}.png)
endforeach()
install(FILES ${drawing} DESTINATION ${icons}/scalable/apps RENAME ${id}.svg)

install(TARGETS pelmarix pelmarix-open lsbom RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/pelmarix.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications RENAME ${id}.desktop)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/pelmarix.metainfo.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo RENAME ${id}.metainfo.xml)
install(FILES debian/copyright DESTINATION ${documents})
install(FILES debian/lintian-overrides DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides RENAME pelmarix)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME pelmarix)
set(CPACK_PACKAGE_VENDOR "The Pelmarix authors")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE https://www.pelmarix.example/)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "tell what has been installed on a Mac")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "\
Pelmarix reads what a Mac keeps about its own installations and shows it in
one window: the install history as an outline and as a report, the package
receipts, and the files that each package installed. It looks at a Mac's
volume that is mounted or copied, and never changes it.

The package also has lsbom, a command that lists bills of materials.")
# The libraries follow from the binaries. Qt loads the rest at run time: libqt6gui6 has the plugin for X11 and
# libqt6network6 the one for TLS, and what isn't everybody's comes from these.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS hicolor-icon-theme)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "at-spi2-core, ca-certificates, qt6-wayland, xdg-utils")
configure_file(prepare_files.cmake.in prepare_files.cmake @ONLY)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_BINARY_DIR}/prepare_files.cmake)
include(CPack)
