# Sanitizers and coverage: they hold for everything below the folder that includes this file.

if(ORV_SANITIZE STREQUAL "address")
    set(ORV_SANITIZE_FLAGS -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    set(ORV_TEST_ENVIRONMENT
        "ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1:detect_stack_use_after_return=1"
        "UBSAN_OPTIONS=print_stacktrace=1")
elseif(ORV_SANITIZE STREQUAL "thread")
    set(ORV_SANITIZE_FLAGS -fsanitize=thread -fno-omit-frame-pointer)
    set(ORV_TEST_ENVIRONMENT "TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1")
elseif(ORV_SANITIZE)
    message(FATAL_ERROR "ORV_SANITIZE is empty, address or thread, not ${ORV_SANITIZE}")
endif()

if(ORV_BUILD_FUZZ AND NOT ORV_SANITIZE)
    set(ORV_SANITIZE_FLAGS -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all)
endif()

if(ORV_SANITIZE_FLAGS)
    add_compile_options(${ORV_SANITIZE_FLAGS})
    add_link_options(${ORV_SANITIZE_FLAGS})
endif()

if(ORV_COVERAGE)
    add_compile_options(--coverage)
    add_link_options(--coverage)
endif()
