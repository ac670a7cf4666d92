# macOS on ARM: zig, of whose tools scripts/zig_tools makes programs of the usual names. Nothing here runs what it links.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR arm64)
set(npar_zig_tools ${CMAKE_CURRENT_LIST_DIR}/../../build/zig/bin)
set(CMAKE_C_COMPILER ${npar_zig_tools}/cc)
set(CMAKE_CXX_COMPILER ${npar_zig_tools}/c++)
set(CMAKE_AR ${npar_zig_tools}/ar)
set(CMAKE_RANLIB ${npar_zig_tools}/ranlib)
set(CMAKE_INSTALL_NAME_TOOL true)  # asked for, and never called
set(CMAKE_OSX_SYSROOT "")
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
