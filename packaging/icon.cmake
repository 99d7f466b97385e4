# One drawing, in the sizes that desktops ask for.
find_program(RSVG_CONVERT rsvg-convert REQUIRED)
set(drawing ${CMAKE_CURRENT_LIST_DIR}/icon/pelmarix.svg)
function(pelmarix_add_icon size file)
  get_filename_component(folder ${file} DIRECTORY)
  file(MAKE_DIRECTORY ${folder})
  add_custom_command(OUTPUT ${file} DEPENDS ${drawing}
    COMMAND ${RSVG_CONVERT} --width=${size} --height=${size} --output=${file} ${drawing})
endfunction()
