# Whole-program: every target, the plug-in included, is built with the same sanitizers.
if(DREVIN_SANITIZE)
  # At -O2 the checks take the compiler more than twice as long.
  add_compile_options(-fsanitize=${DREVIN_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all -g1 -O1)
  add_link_options(-fsanitize=${DREVIN_SANITIZE})
endif()
