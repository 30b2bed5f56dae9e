set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(QV_TARGET x86_64-w64-mingw32)
# The posix variant brings std::thread and std::mutex.
set(CMAKE_C_COMPILER ${QV_TARGET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${QV_TARGET}-g++-posix)
set(CMAKE_RC_COMPILER ${QV_TARGET}-windres)
set(QV_WIDL ${QV_TARGET}-widl)

set(CMAKE_FIND_ROOT_PATH /usr/${QV_TARGET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)

# A host that loads the DLL has nothing of MinGW beside it.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
