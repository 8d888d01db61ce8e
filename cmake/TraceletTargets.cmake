# Warnings, language settings and sanitizers that every target shares.
function(tracelet_options)
  add_library(tracelet_options INTERFACE)
  target_include_directories(tracelet_options INTERFACE ${PROJECT_SOURCE_DIR})
  target_compile_options(tracelet_options INTERFACE -Wall -Wextra -Wshadow -Wconversion)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # This compiler sees overlaps in inlined std::string code where there are none.
    target_compile_options(tracelet_options INTERFACE -Wno-restrict)
  endif()
  if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    # Part of its -Wconversion alone: elsewhere a conversion that only changes the sign is let pass in C++.
    target_compile_options(tracelet_options INTERFACE -Wno-sign-conversion)
  endif()
  if(TRACELET_WERROR)
    target_compile_options(tracelet_options INTERFACE -Werror)
  endif()
  if(TRACELET_SANITIZE)
    set(sanitize -fsanitize=${TRACELET_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_compile_options(tracelet_options INTERFACE ${sanitize})
    target_link_options(tracelet_options INTERFACE ${sanitize})
  endif()
  if(TRACELET_LIBFUZZER)
    # The readers themselves tell the fuzzer which of their branches an input takes.
    target_compile_options(tracelet_options INTERFACE -fsanitize=fuzzer-no-link)
  endif()
endfunction()

# Adds sources of the calling folder to the core (no Qt).
function(tracelet_core_sources)
  target_sources(tracelet_core PRIVATE ${ARGN})
endfunction()

# Adds sources of the calling folder to the window; nothing when the window is not built.
function(tracelet_window_sources)
  if(TRACELET_WINDOW)
    target_sources(tracelet_window PRIVATE ${ARGN})
  endif()
endfunction()

# tracelet_test(NAME [WINDOW] [COMMA] SOURCES...): one test program, run as one CTest test without a display;
# COMMA runs it again, as NAME_comma, on a desktop that writes decimals with a comma.
function(tracelet_test name)
  cmake_parse_arguments(test "WINDOW;COMMA" "" "" ${ARGN})
  if(test_WINDOW AND NOT TRACELET_WINDOW)
    return()
  endif()
  add_executable(${name} ${test_UNPARSED_ARGUMENTS})
  if(test_WINDOW)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    target_link_libraries(${name} PRIVATE tracelet_test_window)
  else()
    target_link_libraries(${name} PRIVATE tracelet_core GTest::gtest GTest::gmock GTest::gtest_main)
  endif()
  if(TRACELET_SANITIZE)
    # Optimizing what the sanitizers put into the tests themselves takes a third of the whole build.
    target_compile_options(${name} PRIVATE -O0)
    target_compile_definitions(${name} PRIVATE TRACELET_SANITIZED)
  endif()
  set(environment "QT_QPA_PLATFORM=offscreen;ASAN_OPTIONS=detect_leaks=1;LOCPATH=${TRACELET_LOCALES}")
  list(APPEND environment "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/leaks-of-the-system.supp:print_suppressions=0")
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES ENVIRONMENT "${environment}" TIMEOUT 300)
  if(test_COMMA AND TRACELET_COMMA_LOCALE)
    add_test(NAME ${name}_comma COMMAND ${name})
    set_tests_properties(${name}_comma PROPERTIES
      ENVIRONMENT "${environment};LC_ALL=${TRACELET_COMMA_LOCALE}" TIMEOUT 300)
  endif()
endfunction()
