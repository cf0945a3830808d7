# Each source folder is globbed, so adding a file never means editing a shared list.

function(kvx_collect out dirs)
  set(all "")
  foreach(dir ${dirs})
    file(GLOB found CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${dir}/*.cpp ${CMAKE_SOURCE_DIR}/${dir}/*.h)
    list(APPEND all ${found})
  endforeach()
  set(${out} ${all} PARENT_SCOPE)
endfunction()

# A library of the non-window files of the given folders.
function(kvx_folder_library name dirs deps)
  kvx_collect(sources "${dirs}")
  list(FILTER sources EXCLUDE REGEX "/frm[^/]*$")
  set(cpp ${sources})
  list(FILTER cpp INCLUDE REGEX "\\.cpp$")
  if(cpp)
    add_library(${name} STATIC ${sources})
    target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
    target_link_libraries(${name} PUBLIC ${deps})
  else()
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE ${CMAKE_SOURCE_DIR}/src)
    target_link_libraries(${name} INTERFACE ${deps})
  endif()
endfunction()

# The windows: frm* of every folder, ui/ and app/ without main.cpp.
function(kvx_window_library name deps)
  file(GLOB frm CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/*/frm*.cpp ${CMAKE_SOURCE_DIR}/src/*/frm*.h)
  kvx_collect(rest "src/ui;src/app")
  list(FILTER rest EXCLUDE REGEX "/main\\.cpp$")
  add_library(${name} STATIC ${frm} ${rest} ${CMAKE_SOURCE_DIR}/resources/korvenatronix.qrc)
  target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${deps})
  set_target_properties(${name} PROPERTIES AUTORCC ON)
endfunction()

# One GoogleTest executable per folder under tests/.
function(kvx_test_folder dir)
  get_filename_component(folder ${dir} NAME)
  file(GLOB sources CONFIGURE_DEPENDS ${dir}/*.cpp ${dir}/*.h)
  set(cpp ${sources})
  list(FILTER cpp INCLUDE REGEX "\\.cpp$")
  if(NOT cpp)
    return()
  endif()
  set(target test_${folder})
  add_executable(${target} ${sources})
  target_include_directories(${target} PRIVATE ${CMAKE_SOURCE_DIR}/tests ${CMAKE_SOURCE_DIR}/src)
  # The wire, the decoders and the virtual vehicle are tested without Qt; the folder rule reads
  # the sources and needs no library at all.
  if(folder STREQUAL "layers")
    target_link_libraries(${target} PRIVATE GTest::gtest GTest::gtest_main)
    target_compile_definitions(${target} PRIVATE KVX_SOURCE_DIR="${CMAKE_SOURCE_DIR}/src")
  elseif(folder MATCHES "^(link|decode|sim)$")
    target_link_libraries(${target} PRIVATE kvx_sim kvx_link GTest::gtest GTest::gtest_main GTest::gmock)
  else()
    target_link_libraries(${target} PRIVATE kvx_windows kvx_services kvx_sim kvx_link
      Qt6::Test GTest::gtest GTest::gtest_main GTest::gmock)
  endif()
  target_compile_definitions(${target} PRIVATE
    KVX_TEST_DATA_DIR="${CMAKE_SOURCE_DIR}/tests/data"
    KVX_RESOURCES_DIR="${CMAKE_SOURCE_DIR}/resources"
    KVX_BIN_DIR="${KVX_RUNTIME_DIR}")
  add_dependencies(${target} kvx_resources kvx)
  gtest_discover_tests(${target}
    WORKING_DIRECTORY ${KVX_RUNTIME_DIR}
    PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen"
    DISCOVERY_TIMEOUT 60)
endfunction()
