# The libraries that we build on: the system's, or for a target that has none of its own, those of
# the sources that scripts/target_sources fetches.
if(NOT NPAR_LIBRARY_SOURCES)
  find_package(Boost 1.74 REQUIRED)
  find_package(pugixml REQUIRED)
  find_package(CLI11 REQUIRED)
  find_package(nlohmann_json REQUIRED)
  find_package(ZLIB REQUIRED)
  find_path(ZSTD_INCLUDE_DIR zstd.h REQUIRED)
  find_library(ZSTD_LIBRARY zstd REQUIRED)
  add_library(npar_zstd INTERFACE)
  target_include_directories(npar_zstd SYSTEM INTERFACE ${ZSTD_INCLUDE_DIR})
  target_link_libraries(npar_zstd INTERFACE ${ZSTD_LIBRARY})
  return()
endif()

set(Boost_INCLUDE_DIRS ${NPAR_LIBRARY_SOURCES}/include)
foreach(name CLI11::CLI11 nlohmann_json::nlohmann_json)
  add_library(${name} INTERFACE IMPORTED)
  target_include_directories(${name} SYSTEM INTERFACE ${NPAR_LIBRARY_SOURCES}/include)
endforeach()

set(pugixml ${NPAR_LIBRARY_SOURCES}/pugixml)
add_library(pugixml STATIC ${pugixml}/src/pugixml.cpp)
target_include_directories(pugixml SYSTEM PUBLIC ${pugixml}/src)
add_library(pugixml::pugixml ALIAS pugixml)

# What unpacks is enough.
set(zlib ${NPAR_LIBRARY_SOURCES}/zlib)
add_library(zlib STATIC ${zlib}/adler32.c ${zlib}/crc32.c ${zlib}/inflate.c ${zlib}/inftrees.c
  ${zlib}/inffast.c ${zlib}/zutil.c)
target_include_directories(zlib SYSTEM PUBLIC ${zlib})
add_library(ZLIB::ZLIB ALIAS zlib)
set(zstd ${NPAR_LIBRARY_SOURCES}/zstd/lib)
file(GLOB zstd_sources ${zstd}/common/*.c ${zstd}/decompress/*.c)
add_library(npar_zstd STATIC ${zstd_sources})
target_include_directories(npar_zstd SYSTEM PUBLIC ${zstd})
target_compile_definitions(npar_zstd PRIVATE ZSTD_DISABLE_ASM=1)
# Their warnings are for those who write them.
foreach(library pugixml zlib npar_zstd)
  target_compile_options(${library} PRIVATE -w)
endforeach()
