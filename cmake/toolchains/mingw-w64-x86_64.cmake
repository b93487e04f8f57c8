# Cross build for 64-bit Windows from Debian: MinGW-w64 with the posix thread model (std::thread
# and std::mutex need it), the tests run under Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(BRINECAST_MINGW_TRIPLET x86_64-w64-mingw32)

set(CMAKE_C_COMPILER ${BRINECAST_MINGW_TRIPLET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${BRINECAST_MINGW_TRIPLET}-g++-posix)
set(CMAKE_RC_COMPILER ${BRINECAST_MINGW_TRIPLET}-windres)
set(CMAKE_OBJDUMP ${BRINECAST_MINGW_TRIPLET}-objdump)
set(CMAKE_DLLTOOL ${BRINECAST_MINGW_TRIPLET}-dlltool)

# Only the target's own libraries and headers; the build host's /usr/include stays out.
set(CMAKE_FIND_ROOT_PATH /usr/${BRINECAST_MINGW_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Every test program and tool runs under Wine.
# Debian's wine64 loader directly: the `wine` wrapper warns on every start that wine32 is missing.
find_program(BRINECAST_WINE NAMES wine64 wine PATHS /usr/lib/wine REQUIRED)
set(CMAKE_CROSSCOMPILING_EMULATOR ${BRINECAST_WINE})

# The compiler's runtime (libgcc, libstdc++, winpthread) is linked into every DLL and program, so
# that each runs on a Windows without MinGW's DLLs on its PATH and no copy of them can be found
# in the wrong version first.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static")
