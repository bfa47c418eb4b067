# The example host: a program named ZEF.EXE with its syntax database beside it.
file(GLOB ZEF_HOST_SOURCES CONFIGURE_DEPENDS examples/host/*.cpp examples/host/*.rc)
file(GLOB ZEF_HOST_RESOURCES CONFIGURE_DEPENDS examples/host/*.manifest examples/host/macros/*.vbs)
if(ZEF_HOST_SOURCES)
  add_executable(ZEF WIN32 ${ZEF_HOST_SOURCES})
  set_target_properties(ZEF PROPERTIES SUFFIX ".EXE")
  target_link_libraries(ZEF PRIVATE zef_options comctl32 gdi32 user32 comdlg32 shell32
                                    ole32 oleaut32 ws2_32)
  target_include_directories(ZEF PRIVATE ${PROJECT_SOURCE_DIR}/examples/host)
  target_compile_definitions(ZEF PRIVATE ZEF_VERSION_MAJOR=${PROJECT_VERSION_MAJOR}
                                         ZEF_VERSION_MINOR=${PROJECT_VERSION_MINOR}
                                         ZEF_VERSION_PATCH=${PROJECT_VERSION_PATCH})
  target_link_options(ZEF PRIVATE -municode -s)
  set_source_files_properties(${PROJECT_SOURCE_DIR}/examples/host/zef.rc PROPERTIES OBJECT_DEPENDS
    "${ZEF_HOST_RESOURCES}")
  add_dependencies(ZEF zefext)
  add_custom_command(TARGET ZEF POST_BUILD COMMAND ${CMAKE_COMMAND} -E copy_if_different
    ${PROJECT_SOURCE_DIR}/examples/host/VBSZEF.XML ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/VBSZEF.XML)
endif()
