# A fuzzing build: every target is compiled with the coverage libFuzzer needs and with AddressSanitizer
# and UndefinedBehaviorSanitizer, so a parser's fault shows where it happens. Only clang has libFuzzer.
if(TUNEDESK_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "TUNEDESK_FUZZ needs clang (cmake -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++)")
  endif()
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-omit-frame-pointer
                      -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=address,undefined)
endif()
