# How every target of this project is compiled. Flags are put on our own targets, never on a consumer's.

function(corvane_compile_settings target)
    target_compile_features(${target} PUBLIC cxx_std_23)
    set_target_properties(
        ${target}
        PROPERTIES CXX_EXTENSIONS OFF
                   CXX_VISIBILITY_PRESET hidden
                   VISIBILITY_INLINES_HIDDEN ON
                   POSITION_INDEPENDENT_CODE ON)
    target_compile_options(
        ${target}
        PRIVATE -Wall
                -Wextra
                -Wpedantic
                -Wshadow
                -Wconversion
                -Wsign-conversion
                -Wnon-virtual-dtor
                -Woverloaded-virtual
                -Wold-style-cast
                -Wcast-align
                -Wcast-qual
                -Wformat=2
                -Wextra-semi
                -Wimplicit-fallthrough
                $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond>
                $<$<CXX_COMPILER_ID:GNU>:-Wlogical-op>
                $<$<BOOL:${CORVANE_WARNINGS_AS_ERRORS}>:-Werror>
                # Sections let the linker drop what nothing uses; our exported functions are not for interposition, so
                # calls between them need no indirection.
                -ffunction-sections
                -fdata-sections
                -fno-semantic-interposition)
    target_link_options(${target} PRIVATE LINKER:--as-needed LINKER:--gc-sections)
    if(CORVANE_SANITIZE)
        target_compile_options(${target} PRIVATE -fsanitize=${CORVANE_SANITIZE} -fno-omit-frame-pointer
                                                 -fno-sanitize-recover=all)
        target_link_options(${target} PUBLIC -fsanitize=${CORVANE_SANITIZE})
    endif()
    if(CORVANE_COVERAGE)
        target_compile_options(${target} PRIVATE --coverage)
        target_link_options(${target} PUBLIC --coverage)
    endif()
endfunction()

# A library that users link: sonames, and in a shared build no symbol left to chance.
function(corvane_library_settings target)
    corvane_compile_settings(${target})
    target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
                                                $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    # Before version 1.0 a minor version may break the binary interface.
    set_target_properties(
        ${target}
        PROPERTIES VERSION ${PROJECT_VERSION}
                   SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
                   LINKER_LANGUAGE CXX)
    if(NOT CORVANE_SANITIZE)
        target_link_options(${target} PRIVATE LINKER:--no-undefined)
    endif()
endfunction()

# One floor of the house: an object library that goes into Corvane. Later arguments are the floors below it.
function(corvane_floor name)
    add_library(corvane_${name} OBJECT ${PROJECT_SOURCE_DIR}/Corvane/Export.hpp)
    corvane_compile_settings(corvane_${name})
    set_target_properties(corvane_${name} PROPERTIES LINKER_LANGUAGE CXX)
    target_include_directories(corvane_${name} PUBLIC ${PROJECT_SOURCE_DIR})
    foreach(lower IN LISTS ARGN)
        target_link_libraries(corvane_${name} PUBLIC corvane_${lower})
    endforeach()
    target_sources(Corvane PRIVATE $<TARGET_OBJECTS:corvane_${name}>)
endfunction()
