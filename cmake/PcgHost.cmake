# The host folder mirrors the product's install: the module and its shadow
# module at the top, the engines at their relative paths below it.
set(PCG_HOST_DIR ${CMAKE_BINARY_DIR}/host CACHE INTERNAL "host folder")

# pcg_host_library(<target> <relative folder> <base name>)
# Puts a shared library at host/<folder>/<base name><platform suffix>, with no
# "lib" prefix, as the facade finds it.
function(pcg_host_library target folder basename)
  set_target_properties(${target} PROPERTIES
    PREFIX ""
    OUTPUT_NAME ${basename}
    LIBRARY_OUTPUT_DIRECTORY ${PCG_HOST_DIR}/${folder}
    RUNTIME_OUTPUT_DIRECTORY ${PCG_HOST_DIR}/${folder}
    ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
  if(WIN32)
    # One C runtime heap and no extra DLLs beside the engines under Wine.
    target_link_options(${target} PRIVATE -static-libgcc -static-libstdc++)
  endif()
endfunction()
