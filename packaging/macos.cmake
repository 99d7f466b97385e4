# Makes Pelmarix.app of the target `pelmarix`. The system has a lister of its own, so ours stays outside.
include(${CMAKE_CURRENT_LIST_DIR}/icon.cmake)
set(iconset ${CMAKE_CURRENT_BINARY_DIR}/Pelmarix.iconset)
foreach(size 16 32 128 256 512)
  math(EXPR doubled "2 * ${size}")
  pelmarix_add_icon(${size} ${iconset}/icon_${size}x${size}.png)
  pelmarix_add_icon(${doubled} ${iconset}/icon_${size}x${size}@2x.png)
  list(APPEND icons ${iconset}/icon_${size}x${size}.png ${iconset}/icon_${size}x${size}@2x.png)
endforeach()
set(icns ${CMAKE_CURRENT_BINARY_DIR}/Pelmarix.icns)
add_custom_command(OUTPUT ${icns} DEPENDS ${icons}
  COMMAND iconutil --convert icns --output ${icns} ${iconset})
add_custom_target(pelmarix_icon DEPENDS ${icns})
add_dependencies(pelmarix pelmarix_icon)

target_sources(pelmarix PRIVATE ${icns})
set_source_files_properties(${icns} TARGET_DIRECTORY pelmarix
  PROPERTIES GENERATED ON MACOSX_PACKAGE_LOCATION Resources)
set_target_properties(pelmarix PROPERTIES
  OUTPUT_NAME Pelmarix MACOSX_BUNDLE ON MACOSX_BUNDLE_INFO_PLIST ${PROJECT_BINARY_DIR}/Info.plist)
install(TARGETS pelmarix BUNDLE DESTINATION .)
