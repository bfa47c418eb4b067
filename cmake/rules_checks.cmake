# Tests and benchmarks of the rules, on the build machine.
# The package ships GoogleTest's sources only: built here once, with our own flags.
set(BUILD_GMOCK OFF)
set(INSTALL_GTEST OFF)
add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)

file(GLOB ZEF_RULE_TESTS CONFIGURE_DEPENDS tests/rules/*.cpp)
add_executable(rules_tests ${ZEF_RULE_TESTS})
target_link_libraries(rules_tests PRIVATE zef_rules gtest_main)
target_include_directories(rules_tests PRIVATE ${PROJECT_SOURCE_DIR}/tests/rules)
target_compile_definitions(rules_tests PRIVATE ZEF_SOURCE_DIR="${PROJECT_SOURCE_DIR}")

if(ZEF_BENCH)
  find_package(benchmark REQUIRED)
  file(GLOB ZEF_RULE_BENCHES CONFIGURE_DEPENDS benchmarks/rules/*.cpp)
  add_executable(rules_bench ${ZEF_RULE_BENCHES})
  target_link_libraries(rules_bench PRIVATE zef_rules benchmark::benchmark benchmark::benchmark_main)
endif()
