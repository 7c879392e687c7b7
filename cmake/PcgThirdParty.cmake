# Operating-system libraries the platform layer links.
add_library(pcg_platform_libs INTERFACE)
find_package(Threads REQUIRED)
target_link_libraries(pcg_platform_libs INTERFACE Threads::Threads)
if(WIN32)
  target_link_libraries(pcg_platform_libs INTERFACE shlwapi ole32 user32 gdi32)
else()
  target_link_libraries(pcg_platform_libs INTERFACE ${CMAKE_DL_LIBS})
endif()

# nlohmann/json is header-only. Only its own folder is put on the include path,
# so the Windows cross-build does not see the host's other headers.
set(PCG_THIRDPARTY_INCLUDE ${CMAKE_BINARY_DIR}/thirdparty-include)
file(MAKE_DIRECTORY ${PCG_THIRDPARTY_INCLUDE})
if(NOT EXISTS ${PCG_THIRDPARTY_INCLUDE}/nlohmann)
  file(CREATE_LINK /usr/include/nlohmann ${PCG_THIRDPARTY_INCLUDE}/nlohmann SYMBOLIC)
endif()
add_library(pcg_json INTERFACE)
target_include_directories(pcg_json SYSTEM INTERFACE ${PCG_THIRDPARTY_INCLUDE})

# GoogleTest: Debian's build natively; its sources for the Windows cross-build.
if(PCG_WITH_TESTS)
  if(WIN32)
    set(gtest_force_shared_crt OFF CACHE BOOL "" FORCE)
    set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
    add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
    # GoogleTest's own build names its GTest:: aliases from release 1.11 on.
    foreach(_pcg_gtest_target gtest gtest_main gmock)
      if(NOT TARGET GTest::${_pcg_gtest_target})
        add_library(GTest::${_pcg_gtest_target} ALIAS ${_pcg_gtest_target})
      endif()
    endforeach()
  else()
    find_package(GTest REQUIRED)
  endif()
endif()

# OpenCV's imgproc backs the reference resampler and the perspective oracle
# natively; the Windows cross-build has no OpenCV. Debian's core and imgproc
# development packages carry no CMake package file, so the headers and
# libraries are also looked up directly. pcg_opencv is the target to link;
# PCG_HAVE_OPENCV says whether it carries anything.
if(NOT WIN32)
  find_package(OpenCV QUIET COMPONENTS core imgproc)
  add_library(pcg_opencv INTERFACE)
  if(OpenCV_FOUND)
    target_include_directories(pcg_opencv SYSTEM INTERFACE ${OpenCV_INCLUDE_DIRS})
    target_link_libraries(pcg_opencv INTERFACE ${OpenCV_LIBS})
    set(PCG_HAVE_OPENCV ON CACHE INTERNAL "OpenCV imgproc is available")
  else()
    find_path(PCG_OPENCV_INCLUDE opencv2/imgproc.hpp PATH_SUFFIXES opencv4)
    find_library(PCG_OPENCV_CORE opencv_core)
    find_library(PCG_OPENCV_IMGPROC opencv_imgproc)
    if(PCG_OPENCV_INCLUDE AND PCG_OPENCV_CORE AND PCG_OPENCV_IMGPROC)
      target_include_directories(pcg_opencv SYSTEM INTERFACE ${PCG_OPENCV_INCLUDE})
      target_link_libraries(pcg_opencv INTERFACE ${PCG_OPENCV_IMGPROC} ${PCG_OPENCV_CORE})
      set(PCG_HAVE_OPENCV ON CACHE INTERNAL "OpenCV imgproc is available")
    else()
      set(PCG_HAVE_OPENCV OFF CACHE INTERNAL "OpenCV imgproc is available")
    endif()
  endif()
else()
  add_library(pcg_opencv INTERFACE)
  set(PCG_HAVE_OPENCV OFF CACHE INTERNAL "OpenCV imgproc is available")
endif()
