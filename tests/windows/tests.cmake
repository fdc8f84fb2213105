# The tests for every system, and what the system's own way of each service is. They run in Wine, where the drive Z: is
# the file system of the machine that builds. A program is started once, as that takes long.
set(drive Z:)

# Debian has GoogleTest for its own system, and the sources.
set(googletest /usr/src/googletest/googletest)
add_library(gtest_main STATIC ${googletest}/src/gtest-all.cc ${googletest}/src/gtest_main.cc)
add_library(GTest::gtest_main ALIAS gtest_main)
target_include_directories(gtest_main PRIVATE ${googletest})
target_include_directories(gtest_main SYSTEM INTERFACE ${googletest}/include)
target_include_directories(gtest_main SYSTEM PRIVATE ${googletest}/include)
target_compile_options(gtest_main PRIVATE -w)

target_sources(rooms_test PRIVATE
    ../platform/linux/reg_file.cpp
    windows/platform_test.cpp
    windows/registry.cpp
    windows/runtime_test.cpp
    windows/servers.cpp
    windows/source_kinds.cpp
    windows/system_object.cpp
    windows/variants_test.cpp)
target_compile_definitions(rooms_test PRIVATE NOMINMAX)
target_compile_definitions(host_test PRIVATE NOMINMAX)
target_link_libraries(host_test PRIVATE xls2tki_platform)

# A host that is not linked with the library. The tests of the command run it.
add_executable(load_test windows/load_test.cpp)
target_link_libraries(load_test PRIVATE GTest::gtest_main)
target_compile_definitions(load_test PRIVATE XLS2TKI_TEST_DATA="${drive}${CMAKE_CURRENT_SOURCE_DIR}/data")

# A host and its logging library as Microsoft's compiler builds them.
set(other_compiler ${CMAKE_CURRENT_BINARY_DIR}/other_compiler)
file(MAKE_DIRECTORY ${other_compiler})
find_program(CLANG clang++ REQUIRED)
set(other_compiler_command ${CLANG} --target=x86_64-pc-windows-msvc -O1 -fno-exceptions -Wall -Wextra -Werror
    -I${other_compiler} -I${PROJECT_SOURCE_DIR})
foreach(header cstdint set string vector)
    file(WRITE ${other_compiler}/${header} "#include \"tests/windows/other_compiler_library.h\"\n")
endforeach()
find_program(LLD_LINK lld-link REQUIRED)
set(system_libraries /usr/x86_64-w64-mingw32/lib)
foreach(source other_compiler_host other_compiler_logging)
    add_custom_command(OUTPUT ${other_compiler}/${source}.obj DEPENDS windows/${source}.cpp
            windows/other_compiler_library.h ${PROJECT_SOURCE_DIR}/api/xls2tki.h ${PROJECT_SOURCE_DIR}/api/xls2tki_c.h
        COMMAND ${other_compiler_command} -std=c++20 -D_DLL -c ${CMAKE_CURRENT_SOURCE_DIR}/windows/${source}.cpp
            -o ${other_compiler}/${source}.obj)
endforeach()
add_custom_command(OUTPUT ${other_compiler}/host.exe DEPENDS ${other_compiler}/other_compiler_host.obj import_library
    COMMAND ${LLD_LINK} /out:${other_compiler}/host.exe /entry:mainCRTStartup /subsystem:console
        ${other_compiler}/other_compiler_host.obj ${CMAKE_ARCHIVE_OUTPUT_DIRECTORY}/xls2tki.lib ${system_libraries}/libucrtbase.a
        ${system_libraries}/libkernel32.a ${system_libraries}/libshell32.a)
add_custom_command(OUTPUT ${other_compiler}/ZoLogging.dll DEPENDS ${other_compiler}/other_compiler_logging.obj
    COMMAND ${LLD_LINK} /dll /out:${other_compiler}/ZoLogging.dll /entry:_DllMainCRTStartup
        ${other_compiler}/other_compiler_logging.obj ${system_libraries}/libkernel32.a)
add_custom_target(other_compiler ALL DEPENDS ${other_compiler}/host.exe ${other_compiler}/ZoLogging.dll)

# The C header in C, and what the C++ header says to compilers whose types it cannot take.
add_test(NAME c_header_elsewhere
    COMMAND ${other_compiler_command} -fsyntax-only -x c ${PROJECT_SOURCE_DIR}/api/xls2tki_c.h)
add_test(NAME refuses_static_runtime
    COMMAND ${other_compiler_command} -std=c++20 -fsyntax-only ${CMAKE_CURRENT_SOURCE_DIR}/windows/other_compiler_host.cpp)
add_test(NAME refuses_ucrt COMMAND ${CMAKE_CXX_COMPILER} -std=c++20 -D_UCRT -fsyntax-only ${PROJECT_SOURCE_DIR}/examples/hosts/host.cpp -I${PROJECT_SOURCE_DIR}/api)
set_tests_properties(refuses_static_runtime PROPERTIES PASS_REGULAR_EXPRESSION "error: .* /MD .* Use xls2tki_c.h")
set_tests_properties(refuses_ucrt PROPERTIES PASS_REGULAR_EXPRESSION "error: .* for UCRT. Use xls2tki_c.h")

add_test(NAME rooms COMMAND rooms_test)
add_test(NAME host COMMAND host_test)
add_test(NAME c_host
    COMMAND c_host_test ${drive}${CMAKE_CURRENT_SOURCE_DIR}/data ${drive}${CMAKE_CURRENT_BINARY_DIR} 0)

# Not the target Python3::Interpreter: that would be run in Wine, too, which cannot and does not say so.
find_package(Python3 REQUIRED COMPONENTS Interpreter)
set(XLS2TKI_LINUX_BUILD "${PROJECT_SOURCE_DIR}/build/release" CACHE PATH "Has what the tests of the command talk to")
add_test(NAME command
    COMMAND ${Python3_EXECUTABLE} ${CMAKE_CURRENT_SOURCE_DIR}/windows/command_test.py
        $<TARGET_FILE:xls2tki_command> $<TARGET_FILE:load_test> ${XLS2TKI_LINUX_BUILD} ${other_compiler})
add_test(NAME dll
    COMMAND ${Python3_EXECUTABLE} ${CMAKE_CURRENT_SOURCE_DIR}/windows/dll_test.py
        ${CMAKE_RUNTIME_OUTPUT_DIRECTORY} ${PROJECT_VERSION})
