# What a consumer may choose. Everything but the library itself is off when Corvane is a subproject.

option(CORVANE_BUILD_TESTS "Build the tests" ${PROJECT_IS_TOP_LEVEL})
option(CORVANE_BUILD_EXAMPLES "Build the examples" ${PROJECT_IS_TOP_LEVEL})
option(CORVANE_BUILD_BENCHMARKS "Build the benchmarks" OFF)
option(CORVANE_BUILD_FUZZERS "Build the fuzz targets (Clang only)" OFF)
option(CORVANE_INSTALL "Make rules to install the library" ${PROJECT_IS_TOP_LEVEL})
option(CORVANE_WARNINGS_AS_ERRORS "Treat warnings in Corvane's own sources as errors" OFF)
option(CORVANE_COVERAGE "Instrument Corvane's own targets for coverage" OFF)
set(CORVANE_SANITIZE "" CACHE STRING "Sanitizers for Corvane's own targets, as -fsanitize takes them")
