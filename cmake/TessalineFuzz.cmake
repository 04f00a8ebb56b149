# The fuzz tree (-DTESSALINE_FUZZ=ON, the "fuzz" preset): the libraries the parsers live in,
# built with clang and instrumented for libFuzzer, AddressSanitizer and UndefinedBehaviorSanitizer,
# plus one fuzzer per parser under fuzz/. The application, the tests and the platform backends
# are left out; Qt itself is not instrumented.
if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "The fuzz tree needs clang (scripts/deps installs it); configure it with "
                        "the fuzz preset or -DCMAKE_CXX_COMPILER=clang++")
endif()

find_package(Qt6 6.4 REQUIRED COMPONENTS Core)
find_package(PkgConfig REQUIRED)
pkg_check_modules(XKB REQUIRED IMPORTED_TARGET xkbcommon)

qt_standard_project_setup()

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(TESSALINE_SHARE_SUBDIR "${CMAKE_INSTALL_DATADIR}/tessaline")
set(TESSALINE_BUILD_SHARE_DIR "${CMAKE_BINARY_DIR}/share/tessaline")

# Every library of the tree gets coverage instrumentation; only the fuzzers link libFuzzer's
# main. Undefined behaviour stops the run like a crash does.
target_compile_options(tessaline-options INTERFACE
    -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined
    -fno-omit-frame-pointer)
target_link_options(tessaline-options INTERFACE -fsanitize=address,undefined)

add_subdirectory(src/common)
add_subdirectory(src/hotkey)
add_subdirectory(src/core)
add_subdirectory(fuzz)
