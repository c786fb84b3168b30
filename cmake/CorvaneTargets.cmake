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
                -Wimplicit-fallthrough
                $<$<BOOL:${CORVANE_WARNINGS_AS_ERRORS}>:-Werror>)
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

# One floor of the house: an object library that goes into Corvane. Later arguments are the floors below it.
function(corvane_floor name)
    add_library(corvane_${name} OBJECT)
    corvane_compile_settings(corvane_${name})
    target_include_directories(corvane_${name} PUBLIC ${PROJECT_SOURCE_DIR})
    foreach(lower IN LISTS ARGN)
        target_link_libraries(corvane_${name} PUBLIC corvane_${lower})
    endforeach()
    target_sources(Corvane PRIVATE $<TARGET_OBJECTS:corvane_${name}>)
    set_property(GLOBAL APPEND PROPERTY CORVANE_FLOORS ${name})
endfunction()
