# The product and what drives it from outside.
add_compile_definitions(WINVER=0x0601 _WIN32_WINNT=0x0601 WIN32_LEAN_AND_MEAN NOMINMAX STRICT
                        UNICODE _UNICODE)
# -static: the host's machine has none of this compiler's runtime.
add_link_options(-static -static-libgcc -static-libstdc++)
add_compile_options(-ffunction-sections -fdata-sections)
# Two builds of one source are the same bytes, whenever and wherever they are made.
add_compile_options(-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
add_link_options(-Wl,--no-insert-timestamp)
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")

configure_file(${PROJECT_SOURCE_DIR}/src/resources/version.rc.in ${PROJECT_BINARY_DIR}/version.rc
               @ONLY)

# Every layout and glyph becomes a resource named by its file.
file(GLOB ZEF_FORMS CONFIGURE_DEPENDS src/resources/*.form)
file(GLOB ZEF_GLYPHS CONFIGURE_DEPENDS src/resources/glyphs/*.glyph)
set(rc "")
foreach(file ${ZEF_FORMS})
  get_filename_component(name ${file} NAME_WE)
  string(TOUPPER ${name} name)
  string(APPEND rc "${name} FORM \"${file}\"\n")
endforeach()
foreach(file ${ZEF_GLYPHS})
  get_filename_component(name ${file} NAME_WE)
  string(TOUPPER ${name} name)
  string(APPEND rc "${name} GLYPH \"${file}\"\n")
endforeach()
# Number 2 is where the loader expects the manifest of a library.
set(ZEF_MANIFEST ${PROJECT_SOURCE_DIR}/src/resources/zefext.manifest)
string(APPEND rc "2 24 \"${ZEF_MANIFEST}\"\n")
file(GENERATE OUTPUT ${PROJECT_BINARY_DIR}/layouts.rc CONTENT "${rc}")
set_source_files_properties(${PROJECT_BINARY_DIR}/layouts.rc
                            PROPERTIES OBJECT_DEPENDS "${ZEF_FORMS};${ZEF_GLYPHS};${ZEF_MANIFEST}")

# All that is not rules needs Windows.
file(GLOB ZEF_WINDOWS_SOURCES CONFIGURE_DEPENDS src/*/*.cpp src/*/*/*.cpp)
# The entry of the library, and what replaces the tool chain's threads in it: a program that makes
# threads of its own needs the tool chain's.
set(ZEF_ENTRY_SOURCES ${PROJECT_SOURCE_DIR}/src/frame/library.cpp
                      ${PROJECT_SOURCE_DIR}/src/platform/runtime_leftovers.cpp
                      ${PROJECT_SOURCE_DIR}/src/platform/runtime_threads.cpp)
list(REMOVE_ITEM ZEF_WINDOWS_SOURCES ${ZEF_RULE_SOURCES} ${ZEF_ENTRY_SOURCES})

# A host's thread gives a stack aligned to 4 bytes, not to this compiler's 16. The protector's few
# functions are ours (platform/stack_guard.cpp).
set(ZEF_PRODUCT_FLAGS -mstackrealign -fstack-protector-strong)
target_compile_options(zef_rules PRIVATE ${ZEF_PRODUCT_FLAGS})

# Everything but the library's entry, as objects, so that the tests may also reach inside.
add_library(zefext_objects OBJECT ${ZEF_WINDOWS_SOURCES})
target_link_libraries(zefext_objects PUBLIC zef_rules comdlg32 gdi32 user32 advapi32 ole32
                                            oleaut32 uuid)
target_compile_definitions(zefext_objects
                           PRIVATE ZEF_INTERFACE_VERSION=${ZEF_INTERFACE_VERSION})
add_library(zefext_entry OBJECT ${ZEF_ENTRY_SOURCES})
target_link_libraries(zefext_entry PUBLIC zef_options)
foreach(part zefext_objects zefext_entry)
  target_compile_options(${part} PRIVATE ${ZEF_PRODUCT_FLAGS})
endforeach()

add_library(zefext SHARED ${PROJECT_BINARY_DIR}/version.rc ${PROJECT_BINARY_DIR}/layouts.rc
                          src/resources/zefext.def)
# The linker's import library does not link: the one that does is made in sdk.cmake.
set_target_properties(zefext PROPERTIES PREFIX ""
                      ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/CMakeFiles)
target_link_libraries(zefext PRIVATE zefext_entry zefext_objects)
# Windows 7 is the oldest system. Handlers of structured exceptions lie in the image (modal runs), so
# it must not say that there are none. The map tells the check of the binary where code is.
target_link_options(zefext PRIVATE -Wl,--gc-sections -s -Wl,--enable-stdcall-fixup
  -Wl,--subsystem,windows:6.1 -Wl,--major-os-version,6 -Wl,--minor-os-version,1
  -Wl,--nxcompat -Wl,--dynamicbase
  -Wl,-Map,${PROJECT_BINARY_DIR}/zefext.map)
# The licences of what is linked in go with the library.
add_custom_command(TARGET zefext POST_BUILD COMMAND ${CMAKE_COMMAND} -E copy_directory
  ${PROJECT_SOURCE_DIR}/docs/notices ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/notices)

include(cmake/host.cmake)
include(cmake/sdk.cmake)
include(cmake/outside_checks.cmake)
