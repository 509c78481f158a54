# What every target of this project is compiled with.
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
set(CMAKE_INSTALL_RPATH "$ORIGIN;$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  # Without the two, nothing that uses precompiled headers is found again.
  set(CMAKE_CXX_COMPILER_LAUNCHER
    ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE_PROGRAM})
endif()

option(WARNINGS_AS_ERRORS "Treat compiler warnings as errors" OFF)
set(SANITIZE "" CACHE STRING "Sanitizers to build with, such as address,undefined")
option(COVERAGE "Measure test coverage" OFF)

add_library(project_options INTERFACE)
target_compile_features(project_options INTERFACE cxx_std_17)
target_compile_options(project_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion)
target_compile_definitions(project_options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_NO_FOREACH QT_NO_URL_CAST_FROM_STRING
  QT_DISABLE_DEPRECATED_BEFORE=0x050f00)
target_include_directories(project_options INTERFACE ${PROJECT_SOURCE_DIR})
if(WARNINGS_AS_ERRORS)
  target_compile_options(project_options INTERFACE -Werror)
endif()
if(SANITIZE)
  target_compile_options(project_options INTERFACE
    -fsanitize=${SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(project_options INTERFACE -fsanitize=${SANITIZE})
endif()
if(COVERAGE)
  target_compile_options(project_options INTERFACE --coverage)
  target_link_options(project_options INTERFACE --coverage)
endif()

# Qt's headers take most of a compilation. Compiled ahead they hide a missing include; the linters do
# without them, and find it.
option(PRECOMPILE_HEADERS "Compile Qt's headers ahead, once for each target" OFF)
set(precompiled_headers
  <QtCore/QBuffer> <QtCore/QDataStream> <QtCore/QDir> <QtCore/QFile> <QtCore/QJsonArray>
  <QtCore/QJsonDocument> <QtCore/QJsonObject> <QtCore/QMap> <QtCore/QPointer> <QtCore/QTimer>
  <QtGui/QImage> <QtGui/QPainter> <QtGui/QPainterPath>
  <QtWidgets/QGraphicsObject> <QtWidgets/QGraphicsScene> <QtWidgets/QUndoStack>
  <functional> <memory> <optional>)
function(precompile_headers target)
  if(PRECOMPILE_HEADERS)
    target_precompile_headers(${target} PRIVATE ${precompiled_headers} ${ARGN})
  endif()
endfunction()
