# 32-bit programs by the compiler of a 64-bit Linux, which runs them too: not a cross build.
set(CMAKE_C_FLAGS_INIT -m32)
set(CMAKE_CXX_FLAGS_INIT -m32)
# Where Debian's lib32 packages are.
set(CMAKE_LIBRARY_PATH /usr/lib32)
