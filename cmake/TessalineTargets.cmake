# Compile options shared by every target of the project.
add_library(tessaline-options INTERFACE)
target_compile_options(tessaline-options INTERFACE -Wall -Wextra -Wpedantic)
target_compile_definitions(tessaline-options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_URL_CAST_FROM_STRING QT_STRICT_ITERATORS)
if(TESSALINE_WERROR)
    target_compile_options(tessaline-options INTERFACE -Werror)
    # GCC 12's optimiser reports std::optional<QString> members copied through inlined Qt code
    # as maybe uninitialized where they are not; the warning stays shown, only not an error.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        target_compile_options(tessaline-options INTERFACE
            $<$<NOT:$<CONFIG:Debug>>:-Wno-error=maybe-uninitialized>)
    endif()
endif()
if(TESSALINE_SANITIZE)
    target_compile_options(tessaline-options INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    target_link_options(tessaline-options INTERFACE -fsanitize=address,undefined)
endif()
