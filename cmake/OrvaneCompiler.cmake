# Compiler settings of every target. Results must be the same to the last bit everywhere, so the
# floating-point model is pinned: no contraction, no fast-math, SSE2 arithmetic on 32-bit x86.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 99)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -ffp-contract=off)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  add_compile_options(-msse2 -mfpmath=sse)
endif()
# Unreachable functions leave the delivered library.
add_compile_options(-ffunction-sections -fdata-sections)
add_link_options(-Wl,--gc-sections)

if(ORVANE_SANITIZE)
  add_compile_options(-fsanitize=${ORVANE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${ORVANE_SANITIZE})
endif()
if(ORVANE_FUZZ)
  # Edges and comparisons for the fuzzer, lines for the report of what it reached.
  add_compile_options(-fsanitize=fuzzer-no-link -fprofile-instr-generate -fcoverage-mapping)
  add_link_options(-fprofile-instr-generate)
endif()
if(ORVANE_SANITIZE MATCHES thread)
  add_compile_options("$<$<COMPILE_LANGUAGE:CXX>:SHELL:-include ${CMAKE_CURRENT_LIST_DIR}/thread_sanitizer.h>")
endif()
if(ORVANE_HARDENED)
  # A write beyond a buffer on the stack ends the program instead of running on.
  add_compile_options(-fstack-protector-strong)
  add_link_options(-fstack-protector-strong) # mingw-w64 keeps what it takes in a library
  if(NOT WIN32)
    # Large frames touch every page; calls and returns go where they may; string functions know their buffers.
    add_compile_options(-fstack-clash-protection -fcf-protection=full $<$<CONFIG:Release>:-U_FORTIFY_SOURCE>
                        $<$<CONFIG:Release>:-D_FORTIFY_SOURCE=2>)
    # Tables of addresses are closed once they are filled. That returns are never bent is said of the whole file, since
    # the C library's start files do not say it of themselves.
    add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack -Wl,-z,shstk)
    include(CheckPIESupported)
    check_pie_supported()
  endif()
endif()
if(WIN32)
  # One file, no runtime library beside it.
  add_link_options(-static)
  # Loaded at any address, with data that never runs; said here, since linkers differ in what they do by themselves.
  add_link_options(-Wl,--dynamicbase -Wl,--nxcompat)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    add_link_options(-Wl,--high-entropy-va)
  endif()
  add_compile_definitions(UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX)
endif()
