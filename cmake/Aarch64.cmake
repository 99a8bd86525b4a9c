# Cross-compiles for AArch64 under Linux, against the packages that scripts/aarch64_root.sh unpacks; what
# is built runs under qemu.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_SYSROOT "${CMAKE_CURRENT_LIST_DIR}/../build/aarch64-root")
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
# Remarks that compilers before GCC 10 passed pairs otherwise.
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64 -L "${CMAKE_SYSROOT}")

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
