# add_module(<name> SOURCES <files...> [LINKS <targets...>] [USES <targets...>])
# One library for one module: the project's warnings, and includes written from the top folder. What
# a module uses, but doesn't link, is out of reach of those that stand on it.
function(add_module name)
  cmake_parse_arguments(MODULE "" "" "SOURCES;LINKS;USES" ${ARGN})
  add_library(${name} STATIC ${MODULE_SOURCES})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${MODULE_LINKS} PRIVATE ${MODULE_USES})
  pelmora_warnings(${name})
endfunction()

# The warnings that all of the project's own code compiles without.
function(pelmora_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wconversion -Wshadow)
  if(PELMORA_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()
