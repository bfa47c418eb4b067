# What uses the shipped library from outside, as a host does: the tests with their scripted user, the
# tour of the dialogs and the product's benchmarks.
set(BUILD_GMOCK OFF)
set(INSTALL_GTEST OFF)
add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)

# A user of any program's windows.
file(GLOB ZEF_USER CONFIGURE_DEPENDS tools/user/*.cpp)
add_library(scripted_user STATIC ${ZEF_USER})
target_include_directories(scripted_user PUBLIC ${PROJECT_SOURCE_DIR}/tools)
target_link_libraries(scripted_user PUBLIC zef_options comctl32 gdi32 user32)

# The tests stand in a directory of their own, beside a copy of the library: it looks for its
# database beside a file named ZEF.EXE, and each test writes the database it needs there.
set(ZEF_OUTSIDE_DIR ${PROJECT_BINARY_DIR}/outside)
file(WRITE ${ZEF_OUTSIDE_DIR}/ZEF.EXE "")
set(ZEF_OUTSIDE_COPIES "")
function(zef_copy_outside source dependency)
  get_filename_component(name ${source} NAME)
  add_custom_command(OUTPUT ${ZEF_OUTSIDE_DIR}/${name}
                     COMMAND ${CMAKE_COMMAND} -E copy ${source} ${ZEF_OUTSIDE_DIR}/${name}
                     DEPENDS ${source} ${dependency})
  set(ZEF_OUTSIDE_COPIES ${ZEF_OUTSIDE_COPIES} ${ZEF_OUTSIDE_DIR}/${name} PARENT_SCOPE)
endfunction()
zef_copy_outside(${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/zefext.dll zefext)

# The library once more, with views that only tests need.
file(WRITE ${PROJECT_BINARY_DIR}/test_views.rc
     "TTESTVIEW FORM \"${PROJECT_SOURCE_DIR}/tests/views/TTestView.form\"\n")
set_source_files_properties(${PROJECT_BINARY_DIR}/test_views.rc PROPERTIES OBJECT_DEPENDS
                            ${PROJECT_SOURCE_DIR}/tests/views/TTestView.form)
add_library(zefext_views SHARED tests/views/test_view.cpp ${PROJECT_BINARY_DIR}/layouts.rc
                                ${PROJECT_BINARY_DIR}/test_views.rc src/resources/zefext.def)
set_target_properties(zefext_views PROPERTIES PREFIX "")
target_link_libraries(zefext_views PRIVATE zefext_entry zefext_objects)
zef_copy_outside(${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/zefext_views.dll zefext_views)

add_custom_target(outside_files ALL DEPENDS ${ZEF_OUTSIDE_COPIES})

# The example host's web server serves the tests as well.
add_library(loopback_server STATIC examples/host/loopback_server.cpp)
target_include_directories(loopback_server PUBLIC examples/host)
target_link_libraries(loopback_server PUBLIC zef_options ws2_32)

function(zef_outside_program name)
  add_executable(${name} ${ARGN})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${ZEF_OUTSIDE_DIR})
  target_link_libraries(${name} PRIVATE scripted_user ole32 oleacc oleaut32 uuid ws2_32 psapi)
  target_compile_definitions(${name} PRIVATE ZEF_INTERFACE_VERSION=${ZEF_INTERFACE_VERSION})
  add_dependencies(${name} outside_files)
endfunction()

file(GLOB ZEF_OUTSIDE_TESTS CONFIGURE_DEPENDS tests/outside/*.cpp)
add_library(outside_suites OBJECT ${ZEF_OUTSIDE_TESTS} tests/hosts/hostility.cpp)
target_include_directories(outside_suites PRIVATE ${PROJECT_SOURCE_DIR}/tests)
target_link_libraries(outside_suites PUBLIC scripted_user gtest loopback_server)
target_compile_definitions(outside_suites
                           PRIVATE ZEF_INTERFACE_VERSION=${ZEF_INTERFACE_VERSION})

# One program for each kind of host that only a manifest makes; the others are arguments.
zef_outside_program(outside_tests tests/outside/themed.rc)
zef_outside_program(host_utf8 tests/hosts/utf8.rc)
zef_outside_program(host_bare)
foreach(host outside_tests host_utf8 host_bare)
  target_link_libraries(${host} PRIVATE outside_suites)
endforeach()

# What a host built with this compiler may bring along.
foreach(file libgcc_s_dw2-1.dll libwinpthread-1.dll)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${file}
                  OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE)
  file(COPY ${path} DESTINATION ${ZEF_OUTSIDE_DIR})
endforeach()

# What needs Windows but no window is tested from inside.
file(GLOB ZEF_PLATFORM_TESTS CONFIGURE_DEPENDS tests/platform/*.cpp)
add_executable(platform_tests ${ZEF_PLATFORM_TESTS} ${PROJECT_BINARY_DIR}/layouts.rc)
set_target_properties(platform_tests PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${ZEF_OUTSIDE_DIR})
target_include_directories(platform_tests PRIVATE ${PROJECT_SOURCE_DIR}/tests)
target_link_libraries(platform_tests PRIVATE zefext_objects scripted_user gtest_main oleacc)

file(GLOB ZEF_OUTSIDE_BENCHES CONFIGURE_DEPENDS benchmarks/outside/*_bench.cpp)
zef_outside_program(outside_bench tests/outside/themed.rc benchmarks/outside/main.cpp
                    benchmarks/outside/painted.cpp ${ZEF_OUTSIDE_BENCHES})
target_include_directories(outside_bench PRIVATE ${PROJECT_SOURCE_DIR}/benchmarks/outside)
target_link_libraries(outside_bench PRIVATE loopback_server winhttp)
# Each registers its own group.
set_target_properties(outside_bench PROPERTIES UNITY_BUILD OFF)
add_library(empty SHARED benchmarks/outside/empty.cpp)
set_target_properties(empty PROPERTIES PREFIX "" RUNTIME_OUTPUT_DIRECTORY ${ZEF_OUTSIDE_DIR})
target_link_options(empty PRIVATE -s)

# So are the facilities measured.
file(GLOB ZEF_PLATFORM_BENCHES CONFIGURE_DEPENDS benchmarks/platform/*.cpp)
add_executable(platform_bench ${ZEF_PLATFORM_BENCHES})
set_target_properties(platform_bench PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${ZEF_OUTSIDE_DIR})
target_link_libraries(platform_bench PRIVATE zefext_objects)

# The tour runs the example host where it is built.
file(GLOB ZEF_TOUR CONFIGURE_DEPENDS examples/tour/*.cpp)
if(TARGET ZEF AND ZEF_TOUR)
  add_executable(tour ${ZEF_TOUR})
  target_include_directories(tour PRIVATE ${PROJECT_SOURCE_DIR}/examples
                                          ${PROJECT_SOURCE_DIR}/examples/host)
  target_link_libraries(tour PRIVATE scripted_user)
  target_link_options(tour PRIVATE -municode)
  add_dependencies(tour ZEF)
endif()
