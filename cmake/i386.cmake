# 32-bit x86 with SSE2 arithmetic; the programs run under user-mode emulation.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER gcc)
set(CMAKE_CXX_COMPILER g++)
set(CMAKE_C_FLAGS_INIT "-m32 -msse2 -mfpmath=sse")
set(CMAKE_CXX_FLAGS_INIT "-m32 -msse2 -mfpmath=sse")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-m32")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-m32")
# The emulated processor has SSE2 but no AVX, so this build's tests run the
# baseline kernels while the x86-64 tests run whatever the host dispatches to.
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-i386 -cpu qemu32)
