# How everything of the project is compiled. Warnings are errors only where a preset of ours asks for it.

function(vodrel_compile target)
    if(MSVC)
        return()
    endif()
    # Single precision means single precision: nothing is contracted or reassociated.
    target_compile_options(${target} PRIVATE -ffp-contract=off -Wall -Wextra -Wconversion -Wshadow)
    # GCC (seen in 12.2) loses a rounding where it joins neighbouring operations to vectors: a double that is rounded to
    # single and widened again goes on unrounded. The tests of SetGeometry show it.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        target_compile_options(${target} PRIVATE -fno-tree-slp-vectorize)
    endif()
    # Objects that are unique in a process would keep an unloaded library in memory.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT MINGW)
        target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-fno-gnu-unique>)
    endif()
    # The runtime of old prints exponents of three digits. What is linked needs nothing but what Windows has.
    if(MINGW)
        target_compile_definitions(${target} PRIVATE __USE_MINGW_ANSI_STDIO=1)
        target_link_options(${target} PRIVATE -static)
    endif()
    if(VODREL_WARNINGS_AS_ERRORS)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
    if(VODREL_SANITIZE)
        # The check of virtual tables opens descriptors, of which a test leaves it none.
        target_compile_options(${target} PRIVATE -fsanitize=${VODREL_SANITIZE} -fno-sanitize=vptr
            -fno-sanitize-recover=all -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=${VODREL_SANITIZE})
    endif()
endfunction()
