# Builds for 32-bit Windows and the 32-bit hosts of a 64-bit one.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86)
set(triple i686-w64-mingw32)
# The same digits as in 64 bits: SSE2, never the x87 stack. Hosts of other compilers keep their stack aligned to 4
# bytes only, so every function that needs more aligns its own.
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse -mstackrealign")
# Exports keep their plain names.
set(width_linker_flags "-Wl,--enable-stdcall-fixup")
include(${CMAKE_CURRENT_LIST_DIR}/server.cmake)
