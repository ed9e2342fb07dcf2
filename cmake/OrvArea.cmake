# How the two libraries are put together: one object library a folder, and a forwarding header
# without extension for each public class.

# orv_library(NAME): an empty shared library with the flags that both libraries share.
function(orv_library name)
    add_library(${name} SHARED)
    add_library(orv::${name} ALIAS ${name})
    set_target_properties(${name} PROPERTIES
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        INSTALL_RPATH "$ORIGIN"
        VERIFY_INTERFACE_HEADER_SETS ON)
    target_compile_features(${name} PUBLIC cxx_std_20)
    # For hosts too, as in orvcl.pc.in: an object that answers to several interfaces has several
    # roots, and IORVUnknown is reached through GetUnknown(), never by a conversion.
    target_compile_options(${name} PUBLIC $<$<CXX_COMPILER_ID:GNU>:-Wno-inaccessible-base>)
    target_include_directories(${name} PUBLIC
        $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
        $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/orvcl>)
    # The library stays loaded once it is: objects and threads of a host may outlive its dlclose.
    target_link_options(${name} PRIVATE -Wl,-z,nodelete)
    if(NOT ORV_SANITIZE_FLAGS)
        target_link_options(${name} PRIVATE -Wl,-z,defs)
    endif()
    target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR})
    orv_code(${name})
endfunction()

# orv_code(TARGET): flags of everything that ends in one of the libraries. Without
# -fno-gnu-unique the statics of templates would pin every copy of the library in memory; without
# -fno-semantic-interposition no exported function could be inlined within its own source.
function(orv_code target)
    target_link_libraries(${target} PRIVATE orv_warnings)
    target_compile_options(${target} PRIVATE
        $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique> -fno-semantic-interposition)
endfunction()

# orvcore_sources(SOURCES file... HEADERS file...): files of liborvcore in the current folder.
# A header below internal/ stays at home.
function(orvcore_sources)
    cmake_parse_arguments(PARSE_ARGV 0 arg "" "" "SOURCES;HEADERS")
    if(arg_SOURCES)
        target_sources(orvcore PRIVATE ${arg_SOURCES})
    endif()
    orv_public_headers(orvcore ${arg_HEADERS})
endfunction()

# orv_area(NAME SOURCES file... HEADERS file... [FORWARD Name=Header.h...])
#
# The files of one folder: an object library orv_NAME that goes into liborvcl, and the headers of
# the folder. Each public header orv/io/InputStream.h is forwarded to by orv/io/InputStream;
# FORWARD adds further names for a header that declares several classes. Headers below internal/
# are neither forwarded to nor installed.
function(orv_area name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;HEADERS;FORWARD")
    if(arg_SOURCES)
        add_library(orv_${name} OBJECT ${arg_SOURCES})
        target_link_libraries(orv_${name} PRIVATE orvcore)
        target_compile_definitions(orv_${name} PRIVATE orvcl_EXPORTS)
        orv_code(orv_${name})
        target_sources(orvcl PRIVATE $<TARGET_OBJECTS:orv_${name}>)
        set_property(GLOBAL APPEND PROPERTY ORV_AREAS orv_${name})
    endif()
    orv_public_headers(orvcl ${arg_HEADERS})
    foreach(header IN LISTS arg_HEADERS)
        if(NOT header MATCHES "(^|/)internal/")
            get_filename_component(class ${header} NAME_WE)
            orv_forward(${class} ${header})
        endif()
    endforeach()
    foreach(row IN LISTS arg_FORWARD)
        if(NOT row MATCHES "^([A-Za-z0-9_]+)=(.+)$")
            message(FATAL_ERROR "orv_area(${name}): FORWARD takes Name=Header.h, not ${row}")
        endif()
        orv_forward(${CMAKE_MATCH_1} ${CMAKE_MATCH_2})
    endforeach()
endfunction()

# Adds the headers of the current folder that hosts may include to the header set of a library.
function(orv_public_headers library)
    list(FILTER ARGN EXCLUDE REGEX "(^|/)internal/")
    if(ARGN)
        list(TRANSFORM ARGN PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
        target_sources(${library} PUBLIC FILE_SET HEADERS FILES ${ARGN})
    endif()
endfunction()

# Writes the forwarding header CLASS of the current folder and installs it beside its target.
function(orv_forward class header)
    file(RELATIVE_PATH folder ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
    get_filename_component(below "${header}" DIRECTORY)
    if(below)
        set(below "/${below}")
    endif()
    set(forwarder ${PROJECT_BINARY_DIR}/include/${folder}${below}/${class})
    file(CONFIGURE OUTPUT ${forwarder} CONTENT "#pragma once\n#include \"${folder}/${header}\"\n" @ONLY)
    if(ORV_INSTALL)
        install(FILES ${forwarder} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/orvcl/${folder}${below})
    endif()
endfunction()

# To be called when every folder has spoken: CMake refuses a library without a source.
function(orv_libraries_done)
    foreach(library orvcore orvcl)
        get_target_property(sources ${library} SOURCES)
        if(NOT sources)
            file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/none.cpp CONTENT "")
            target_sources(${library} PRIVATE ${PROJECT_BINARY_DIR}/none.cpp)
        endif()
    endforeach()
endfunction()
