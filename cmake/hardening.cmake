# What makes a fault harder to exploit: a guarded stack, tables of addresses that nobody can write to, a command that is
# loaded anywhere, and in optimised builds calls of the C library that check sizes. Sanitizers find more without it.
# Jumps are not checked (-fcf-protection): the processor does so only for a program of which every part is built for it,
# and Debian's C and C++ libraries are not.
include(CheckPIESupported)
check_pie_supported()
add_compile_options(-fstack-protector-strong -fstack-clash-protection)
if(CMAKE_BUILD_TYPE MATCHES "^Rel")
    add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3)
endif()
add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
