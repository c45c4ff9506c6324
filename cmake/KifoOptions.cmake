# What a build holds and how it is compiled. Everything a person may switch stands here.
option(BUILD_SHARED_LIBS "Build kifo::kit and kifo::ui as shared libraries" ON)
option(KIFO_BUILD_TESTING "Build kifo::testing, the fakes of the ports and the local server" ${PROJECT_IS_TOP_LEVEL})
option(KIFO_BUILD_TESTS "Build the SDK's own tests" ${PROJECT_IS_TOP_LEVEL})
option(KIFO_BUILD_APPS "Build the demo and the tool" ${PROJECT_IS_TOP_LEVEL})
option(KIFO_BUILD_BENCH "Build the benchmarks" OFF)
option(KIFO_BUILD_FUZZ "Build the libFuzzer targets (clang only)" OFF)
set(KIFO_SANITIZE "" CACHE STRING "Sanitizers to compile with, e.g. address,undefined or thread")

find_package(Qt6 6.4 QUIET COMPONENTS Core Gui Widgets DBus)
option(KIFO_WITH_UI "Build kifo::ui (needs Qt 6 Widgets)" ${Qt6_FOUND})
find_package(Qt6 6.4 QUIET COMPONENTS Quick)
set(_has_quick OFF)
if(Qt6Quick_FOUND)
  set(_has_quick ON)
endif()
# A QML module that is compiled into an archive would have to be named by every program.
include(CMakeDependentOption)
cmake_dependent_option(KIFO_WITH_QUICK "Build kifo::quick (needs Qt 6 Quick)" ${_has_quick}
  "KIFO_WITH_UI;BUILD_SHARED_LIBS" OFF)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# What ships is small: compiled for size and as a whole, without what nothing refers to, and with its
# relocations packed. An archive is left alone: other compilers must be able to read it.
if(PROJECT_IS_TOP_LEVEL)
  set(CMAKE_CXX_FLAGS_RELEASE "-Os -DNDEBUG -ffunction-sections -fdata-sections")
  if(BUILD_SHARED_LIBS)
    include(CheckIPOSupported)
    check_ipo_supported(RESULT KIFO_OPTIMIZES_WHOLE LANGUAGES CXX)
  endif()
endif()
include(CheckLinkerFlag)
check_linker_flag(CXX -Wl,-z,pack-relative-relocs KIFO_PACKS_RELOCATIONS)

if(KIFO_SANITIZE)
  add_compile_options(-fsanitize=${KIFO_SANITIZE} -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${KIFO_SANITIZE})
  if(KIFO_SANITIZE MATCHES undefined)
    add_compile_options(-fno-sanitize-recover=undefined)
  endif()
endif()

# Qt's assertions see calls into objects that are destroyed; an optimised build leaves them out.
if(KIFO_BUILD_TESTS AND KIFO_WITH_UI)
  set_property(TARGET Qt6::Core APPEND PROPERTY INTERFACE_COMPILE_DEFINITIONS QT_FORCE_ASSERTS)
endif()

find_program(KIFO_CCACHE ccache)
if(KIFO_CCACHE AND PROJECT_IS_TOP_LEVEL)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
      CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
      CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} ${KIFO_CCACHE})
endif()
