# Warning and sanitizer flags shared by every target of the project.
function(ravelin_set_warnings target)
  if(MSVC)
    target_compile_options(${target} PRIVATE /W4 $<$<BOOL:${RAVELIN_WERROR}>:/WX>)
  else()
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion
                                             -Wno-sign-conversion -Wnon-virtual-dtor
                                             $<$<BOOL:${RAVELIN_WERROR}>:-Werror>)
  endif()
endfunction()

if(RAVELIN_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
