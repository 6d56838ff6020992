# How this project declares its targets: rooms (shared libraries), programs, and their warnings.

set(HBX_INCLUDE_ROOT "${PROJECT_SOURCE_DIR}/core/src")
set(HBX_EXPORTED "${PROJECT_SOURCE_DIR}/packaging/symbols/exported.map")
set(HBX_ROOMS HBX::FunctionalityCore HBX::Core HBX::Message HBX::Common)

function(hbx_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
                                             $<$<BOOL:${HBX_WERROR}>:-Werror>)
endfunction()

# The rooms that exist, so that a program can be built as soon as the rooms it uses have sources.
function(hbx_link_rooms target)
    foreach(room IN LISTS HBX_ROOMS)
        if(TARGET ${room})
            target_link_libraries(${target} PRIVATE ${room})
        endif()
    endforeach()
endfunction()

# hbx_room(<name> [PUBLIC <targets>...] [PRIVATE <targets>...])
# Declares the room of the current folder as the library <name>, alias HBX::<name without HBX>. Sources are all
# *.cpp in it; public headers are all *.h but those in folders named internal. A room without sources is skipped.
function(hbx_room name)
    cmake_parse_arguments(PARSE_ARGV 1 room "" "" "PUBLIC;PRIVATE")
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS *.cpp)
    file(GLOB_RECURSE headers CONFIGURE_DEPENDS *.h)
    list(FILTER headers EXCLUDE REGEX "/internal/")
    if(NOT sources)
        message(STATUS "${name} has no sources yet: skipped")
        return()
    endif()
    string(REGEX REPLACE "^HBX" "" short ${name})

    add_library(${name} SHARED ${sources})
    add_library(HBX::${short} ALIAS ${name})
    target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS "${HBX_INCLUDE_ROOT}" FILES ${headers})
    target_compile_features(${name} PUBLIC cxx_std_20)
    set_target_properties(${name} PROPERTIES
        LINK_DEPENDS "${HBX_EXPORTED}"
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
        EXPORT_NAME ${short}
        INSTALL_RPATH "$ORIGIN"
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    hbx_warnings(${name})
    # Nobody replaces our functions at load time, so calls within a room may be direct and inlined.
    target_compile_options(${name} PRIVATE -fno-semantic-interposition)
    # An unresolved symbol would be an include that points up; clang's sanitizers leave theirs unresolved.
    target_link_options(${name} PRIVATE $<$<CXX_COMPILER_ID:GNU>:LINKER:--no-undefined>
                                        "LINKER:--version-script=${HBX_EXPORTED}")

    foreach(scope PUBLIC PRIVATE)
        foreach(dependency IN LISTS room_${scope})
            if(dependency MATCHES "^HBX::" AND NOT TARGET ${dependency})
                continue()
            endif()
            target_link_libraries(${name} ${scope} ${dependency})
        endforeach()
    endforeach()
    install(TARGETS ${name} EXPORT HBXFunctionalityCoreTargets
            LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT library NAMELINK_COMPONENT development
            FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT development)
endfunction()

# hbx_program(<name> <sources>...): an executable over the rooms.
function(hbx_program name)
    add_executable(${name} ${ARGN})
    target_compile_features(${name} PRIVATE cxx_std_20)
    hbx_warnings(${name})
    hbx_link_rooms(${name})
endfunction()
