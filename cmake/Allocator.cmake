# The programs allocate through mimalloc. Reading or writing one photo makes and frees some
# thousands of small blocks in Exiv2 and the XMP toolkit; glibc's allocator spends a fifth of a
# read on them (its small-block caches fill up, and each larger request then sorts every
# cached block back into its bins). mimalloc serves the same requests from per-thread pages.
# Only the executables link it: the core library leaves the choice to its user. Builds with
# sanitizers keep their own allocator.
option(TAGMOOR_MIMALLOC "Link the program and the command line with mimalloc" ON)
add_library(tagmoor_allocator INTERFACE)
if(TAGMOOR_MIMALLOC AND NOT TAGMOOR_SANITIZE AND NOT TAGMOOR_FUZZ)
  find_package(mimalloc 2.0 REQUIRED)
  # Nothing of ours calls it by name, so the library is kept even where the linker drops the
  # ones no symbol is taken from; its malloc then comes before the C library's.
  set(CMAKE_LINK_LIBRARY_USING_tagmoor_keep
    "LINKER:--push-state,--no-as-needed" "<LINK_ITEM>" "LINKER:--pop-state")
  set(CMAKE_LINK_LIBRARY_USING_tagmoor_keep_SUPPORTED TRUE)
  target_link_libraries(tagmoor_allocator INTERFACE "$<LINK_LIBRARY:tagmoor_keep,mimalloc>")
  message(STATUS "Allocating with mimalloc ${mimalloc_VERSION}")
endif()
