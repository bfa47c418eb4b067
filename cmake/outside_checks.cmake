# The tests that load the shipped library by name, as a host does, and drive it with a scripted user.
set(BUILD_GMOCK OFF)
set(INSTALL_GTEST OFF)
add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)

file(GLOB ZEF_OUTSIDE_TESTS CONFIGURE_DEPENDS tests/outside/*.cpp)
if(ZEF_OUTSIDE_TESTS)
  add_executable(outside_tests ${ZEF_OUTSIDE_TESTS})
  target_link_libraries(outside_tests PRIVATE zefext_objects gtest comctl32 gdi32 user32 ole32
                                              oleacc oleaut32 uuid ws2_32 psapi)
  target_compile_definitions(outside_tests
                             PRIVATE ZEF_INTERFACE_VERSION=${ZEF_INTERFACE_VERSION})
  add_dependencies(outside_tests zefext)
endif()
