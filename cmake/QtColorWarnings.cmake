# Our own targets build warning-free at -Wall -Wextra; third-party headers
# (Qt, exiv2, benchmark) come in as system includes and stay out of it.
function(qtcolor_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra)
endfunction()
