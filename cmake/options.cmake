# Compiler options of every target of the project. Warnings are errors with g++ and clang.
add_library(kz_options INTERFACE)
target_compile_options(kz_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough
    -Wformat=2 -Werror -fno-plt)
if(KZ_SANITIZE)
    target_compile_options(kz_options INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(kz_options INTERFACE -fsanitize=address,undefined)
endif()
if(KZ_COVERAGE)
    target_compile_options(kz_options INTERFACE --coverage)
    target_link_options(kz_options INTERFACE --coverage)
endif()
if(KZ_FUZZ)
    target_compile_options(kz_options INTERFACE -fsanitize=fuzzer-no-link)
    target_link_options(kz_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
