# The library is a stack of layers, one static library per source folder, each allowed to use
# only the layers below it. A layer sees the headers of its own folder and of the layers it links
# and nothing else: each gets an include root of its own, holding a link to its folder, and the
# roots of lower layers reach it through the link dependencies. An include of a higher layer's
# header therefore fails to compile.

set(RAVELIN_INCLUDE_ROOTS ${CMAKE_BINARY_DIR}/include)

# The include root of one folder: <build>/include/<folder>/ravelin/<folder> -> the source folder.
function(ravelin_include_root folder out)
  set(root ${RAVELIN_INCLUDE_ROOTS}/${folder})
  file(MAKE_DIRECTORY ${root}/ravelin)
  if(NOT EXISTS ${root}/ravelin/${folder})
    file(CREATE_LINK ${CMAKE_SOURCE_DIR}/${folder} ${root}/ravelin/${folder} SYMBOLIC)
  endif()
  set(${out} ${root} PARENT_SCOPE)
endfunction()

# Adds the layer of `folder` as target ravelin_<folder>, linked to the layer below it (`below`,
# empty for the lowest). Extra sources (the platform's native files) come after SOURCES.
function(ravelin_add_layer folder)
  cmake_parse_arguments(layer "" "BELOW" "SOURCES" ${ARGN})
  set(target ravelin_${folder})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${folder}/*.cpp)
  list(APPEND sources ${layer_SOURCES})
  ravelin_include_root(${folder} root)
  if(sources)
    add_library(${target} STATIC ${sources})
    target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${root}>
                                                $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    if(layer_BELOW)
      target_link_libraries(${target} PUBLIC ${layer_BELOW})
    endif()
    # The headers need C++20, so a program using them does too.
    target_compile_features(${target} PUBLIC cxx_std_20)
    ravelin_set_warnings(${target})
    if(WIN32)
      target_compile_definitions(${target} PRIVATE WIN32_LEAN_AND_MEAN NOMINMAX UNICODE _UNICODE)
    endif()
  else()
    # A folder of headers only.
    add_library(${target} INTERFACE)
    target_include_directories(${target} INTERFACE $<BUILD_INTERFACE:${root}>
                                                   $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    if(layer_BELOW)
      target_link_libraries(${target} INTERFACE ${layer_BELOW})
    endif()
    target_compile_features(${target} INTERFACE cxx_std_20)
  endif()
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${folder})
  add_library(Ravelin::${folder} ALIAS ${target})
endfunction()
