# Another host's framework: its headers take the place of host/, its library that of framework/.
# They stand before this project's own folder, where the same names lie.
target_include_directories(project_options BEFORE INTERFACE ${FRAMEWORK_SDK})

add_library(host INTERFACE)
target_link_libraries(host INTERFACE Qt5::Core Qt5::Gui Qt5::Widgets)

find_library(FRAMEWORK_SDK_LIBRARY framework
  PATHS ${FRAMEWORK_SDK}/lib NO_DEFAULT_PATH REQUIRED)
add_library(framework SHARED IMPORTED)
set_target_properties(framework PROPERTIES IMPORTED_LOCATION ${FRAMEWORK_SDK_LIBRARY})
