# One target that every target of ours links: warnings, all of them errors, and the sanitizers of the debug preset.
add_library(tandemize_options INTERFACE)
target_compile_options(tandemize_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
if(TANDEMIZE_SANITIZE)
  target_compile_options(tandemize_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(tandemize_options INTERFACE -fsanitize=address,undefined)
endif()
# g++ 12 sees overlapping copies where a std::string begins with a literal (its bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(tandemize_options INTERFACE -Wno-restrict)
endif()
