# Components: libraries that hosts load by the ProgIDs of their classes.

# orv_component(NAME SOURCES file... [LIBS library...]): the target orv-NAME, a library
# liborv-NAME.so that is installed into orv/ beside the library itself. It exports what
# orv/quark/Component.h declares and nothing else.
function(orv_component name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBS")
    set(target orv-${name})
    add_library(${target} MODULE ${arg_SOURCES})
    target_link_libraries(${target} PRIVATE orv::orvcl ${arg_LIBS})
    orv_code(${target})
    # It stays loaded, as the library does: its objects may be in use anywhere.
    target_link_options(${target} PRIVATE -Wl,-z,nodelete)
    if(NOT ORV_SANITIZE_FLAGS)
        target_link_options(${target} PRIVATE -Wl,-z,defs)
    endif()
    set_target_properties(${target} PROPERTIES
        LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/components
        INSTALL_RPATH "$ORIGIN/..")
    if(ORV_INSTALL)
        install(TARGETS ${target} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/orv)
    endif()
endfunction()
