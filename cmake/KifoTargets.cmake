# Each library is compiled once, as an object library whose folders list their own sources and their
# public headers. What needs internals (tests, bench, fuzz targets, the tool) links the objects.
find_package(Threads REQUIRED)
find_package(SQLite3 REQUIRED)
find_package(CURL REQUIRED)
find_package(OpenSSL REQUIRED COMPONENTS Crypto)
find_package(nlohmann_json 3.11 REQUIRED)
find_library(MNL_LIBRARY mnl REQUIRED)
find_path(MNL_INCLUDE_DIR libmnl/libmnl.h REQUIRED)

add_library(kifo_warnings INTERFACE)
target_compile_options(kifo_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
                       -Woverloaded-virtual $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety>)

function(kifo_object_library name)
  if(NOT TARGET ${name})
    add_library(${name} OBJECT)
  endif()
  target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
  target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:kifo_warnings>)
  target_compile_definitions(${name} PRIVATE KIFO_BUILDING)
  set_target_properties(${name} PROPERTIES
    INTERPROCEDURAL_OPTIMIZATION_RELEASE "${KIFO_OPTIMIZES_WHOLE}")
endfunction()

# kifo_library(<target> <alias>): the library that hosts link, made from <target>_objects.
function(kifo_library target alias)
  add_library(${target})
  add_library(kifo::${alias} ALIAS ${target})
  target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR})
  target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:${target}_objects>)
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${alias} VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR} LINKER_LANGUAGE CXX
    INTERPROCEDURAL_OPTIMIZATION_RELEASE "${KIFO_OPTIMIZES_WHOLE}")
  target_compile_features(${target} PUBLIC cxx_std_20)
  if(BUILD_SHARED_LIBS AND NOT KIFO_SANITIZE)
    target_link_options(${target} PRIVATE
      -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map -Wl,--gc-sections
      $<$<BOOL:${KIFO_PACKS_RELOCATIONS}>:-Wl,-z,pack-relative-relocs>)
    set_property(TARGET ${target} APPEND PROPERTY
      LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/exports.map)
  endif()
endfunction()

# kifo_public_headers(<target> <header>...): what a host of <target> may include. Only these are
# installed.
function(kifo_public_headers target)
  target_sources(${target} PUBLIC FILE_SET HEADERS FILES ${ARGN})
endfunction()

kifo_object_library(kifo_kit_objects)
target_link_libraries(kifo_kit_objects
  PUBLIC nlohmann_json::nlohmann_json Threads::Threads
  PRIVATE SQLite::SQLite3 CURL::libcurl OpenSSL::Crypto ${MNL_LIBRARY})
target_include_directories(kifo_kit_objects PRIVATE ${MNL_INCLUDE_DIR})
target_precompile_headers(kifo_kit_objects PRIVATE
  <nlohmann/json.hpp> <functional> <memory> <mutex> <optional> <string> <vector>)
kifo_library(kifo_kit kit)
target_link_libraries(kifo_kit PUBLIC Threads::Threads
  PRIVATE SQLite::SQLite3 CURL::libcurl OpenSSL::Crypto ${MNL_LIBRARY})

# kifo_qt_objects(<target> <folder>...): a library's objects whose folders list their own sources;
# moc looks for new ones only when these lists change.
function(kifo_qt_objects name)
  kifo_object_library(${name})
  list(TRANSFORM ARGN PREPEND ${PROJECT_SOURCE_DIR}/)
  list(TRANSFORM ARGN APPEND /CMakeLists.txt)
  set_target_properties(${name} PROPERTIES AUTOMOC ON AUTOGEN_TARGET_DEPENDS "${ARGN}")
  target_compile_definitions(${name} PRIVATE QT_NO_KEYWORDS)
endfunction()

# One popup without a toolkit, which kifo::gui holds. A headless host has no use for it.
kifo_object_library(kifo_popup_objects)
target_link_libraries(kifo_popup_objects PUBLIC nlohmann_json::nlohmann_json)
if(NOT KIFO_WITH_UI)
  set_target_properties(kifo_popup_objects PROPERTIES EXCLUDE_FROM_ALL ON)
endif()

if(KIFO_WITH_UI)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Widgets DBus)
  find_package(Qt6 6.4 QUIET COMPONENTS Positioning)
  set(_views Kifo_iOS_Common_Kit/inapp/views)

  # What kifo::ui and kifo::quick share. It needs Qt Gui only.
  kifo_qt_objects(kifo_gui_objects ${_views}/looks ${_views}/images ${_views}/alertcore
    platform/qt)
  target_link_libraries(kifo_gui_objects PUBLIC Qt6::Gui Qt6::DBus
    PRIVATE $<TARGET_NAME_IF_EXISTS:Qt6::Positioning>)
  target_precompile_headers(kifo_gui_objects PRIVATE
    <functional> <memory> <optional> <string> <vector> <QtGui>)
  kifo_library(kifo_gui gui)
  target_link_libraries(kifo_gui PUBLIC kifo_kit Qt6::Gui Qt6::DBus
    PRIVATE $<BUILD_INTERFACE:kifo_popup_objects> $<TARGET_NAME_IF_EXISTS:Qt6::Positioning>)

  kifo_qt_objects(kifo_ui_objects ${_views}/shared ${_views}/popup ${_views}/alert platform/qt)
  target_link_libraries(kifo_ui_objects PUBLIC Qt6::Widgets Qt6::DBus)
  target_precompile_headers(kifo_ui_objects PRIVATE
    <functional> <memory> <optional> <string> <vector> <QtWidgets>)
  kifo_library(kifo_ui ui)
  target_link_libraries(kifo_ui PUBLIC kifo_gui Qt6::Widgets)
endif()
