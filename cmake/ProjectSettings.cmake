# Compile settings for the project's own code; third-party headers stay out of -Werror.
add_library(tunedesk_warnings INTERFACE)
target_compile_options(tunedesk_warnings INTERFACE -Wall -Wextra -Werror)
target_compile_definitions(tunedesk_warnings INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII)

option(TUNEDESK_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
if(TUNEDESK_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=address,undefined)
endif()
