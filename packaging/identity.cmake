# What the program says of itself, in one place: PELMARIX_BUNDLE_IDENTIFIER, and Info.plist in the build's folder.

# Names the bundle and, on macOS, its preferences: QSettings makes the same name of a domain in lower case that ends in .com,
# .org, .net or two letters.
set(PELMARIX_ORGANIZATION_DOMAIN example.org CACHE STRING "Domain of those who publish the program")
string(REPLACE . ";" labels ${PELMARIX_ORGANIZATION_DOMAIN})
list(REVERSE labels)
list(JOIN labels . PELMARIX_BUNDLE_IDENTIFIER)
string(APPEND PELMARIX_BUNDLE_IDENTIFIER .${PROJECT_NAME})

configure_file(${CMAKE_CURRENT_LIST_DIR}/Info.plist.in ${PROJECT_BINARY_DIR}/Info.plist @ONLY)
