# What a host's programmer gets beside the library: the import library, the examples in plain C, the
# example host's own accounts directory.
enable_language(C)
set(ZEF_SDK_DIR ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})

# The library exports plain names; who compiles against the header asks for those of the calling
# convention. The linker's own import library has no such names.
file(STRINGS src/resources/zefext.def exports REGEX "^  [A-Za-z0-9]+=[A-Za-z0-9]+@[0-9]+$")
list(TRANSFORM exports REPLACE "^  [A-Za-z0-9]+=" "  ")
list(JOIN exports "\n" exports)
file(GENERATE OUTPUT ${PROJECT_BINARY_DIR}/import.def
     CONTENT "LIBRARY zefext.dll\nEXPORTS\n${exports}\n")
set(ZEF_IMPORT_LIBRARY ${ZEF_SDK_DIR}/libzefext.dll.a)
add_custom_command(OUTPUT ${ZEF_IMPORT_LIBRARY}
  COMMAND ${CMAKE_DLLTOOL} --deterministic-libraries --temp-prefix zefext --kill-at
          --input-def ${PROJECT_BINARY_DIR}/import.def --output-lib libzefext.dll.a
  # The path given would become part of its symbols.
  WORKING_DIRECTORY ${ZEF_SDK_DIR}
  DEPENDS ${PROJECT_BINARY_DIR}/import.def)
add_custom_target(import_library ALL DEPENDS ${ZEF_IMPORT_LIBRARY})

# As strict as a host's compiler may be.
function(zef_c_example name)
  add_executable(${name} ${ARGN})
  target_include_directories(${name} PRIVATE include)
  target_compile_options(${name} PRIVATE -std=c89 -Wall -Wextra -pedantic -Werror)
  target_link_options(${name} PRIVATE -s)
endfunction()

# What a stranger copies to begin with.
zef_c_example(minimal WIN32 examples/minimal.c)
# One example an export, shown in the reference.
zef_c_example(reference examples/reference.c)
target_link_libraries(reference PRIVATE ${ZEF_IMPORT_LIBRARY})
add_dependencies(reference import_library)

file(COPY examples/host/Comptes DESTINATION ${ZEF_SDK_DIR})
# For authors of the syntax database.
add_executable(zefdb tools/zefdb/main.cpp)
target_link_libraries(zefdb PRIVATE zefext_objects)
target_link_options(zefdb PRIVATE -municode -s)
add_custom_command(TARGET zefdb POST_BUILD COMMAND ${CMAKE_COMMAND} -E copy_if_different
  ${PROJECT_SOURCE_DIR}/docs/vbszef.xsd ${ZEF_SDK_DIR}/vbszef.xsd)

add_custom_target(sdk DEPENDS zefext ZEF minimal import_library zefdb)
