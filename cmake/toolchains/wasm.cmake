# WebAssembly: Debian's emscripten, run by Node.
include(/usr/share/emscripten/cmake/Modules/Platform/Emscripten.cmake)
set(CMAKE_CROSSCOMPILING_EMULATOR node)
# Emscripten's optimizer of scripts finds its parser where Debian puts it, whichever Node runs it.
set_property(GLOBAL PROPERTY RULE_LAUNCH_LINK "${CMAKE_COMMAND} -E env NODE_PATH=/usr/share/nodejs")
