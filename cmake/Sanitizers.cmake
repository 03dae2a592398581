# The first report ends the program, so that a test cannot pass with one.
if(QORUTILS_SANITIZE)
    add_compile_options(
        -fsanitize=${QORUTILS_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${QORUTILS_SANITIZE})
endif()
