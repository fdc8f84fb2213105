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
target_sources(host_test PRIVATE ../platform/linux/reg_file.cpp windows/registry.cpp)
target_compile_definitions(rooms_test PRIVATE NOMINMAX)
target_compile_definitions(host_test PRIVATE NOMINMAX)
target_link_libraries(host_test PRIVATE xls2tki_platform)

# A host that is not linked with the library. The tests of the command run it.
add_executable(load_test windows/load_test.cpp)
target_link_libraries(load_test PRIVATE GTest::gtest_main)
target_compile_definitions(load_test PRIVATE XLS2TKI_TEST_DATA="${drive}${CMAKE_CURRENT_SOURCE_DIR}/data")

add_test(NAME rooms COMMAND rooms_test)
add_test(NAME host COMMAND host_test)
add_test(NAME c_host
    COMMAND c_host_test ${drive}${CMAKE_CURRENT_SOURCE_DIR}/data ${drive}${CMAKE_CURRENT_BINARY_DIR} 0)

# Not the target Python3::Interpreter: that would be run in Wine, too, which cannot and does not say so.
find_package(Python3 REQUIRED COMPONENTS Interpreter)
set(XLS2TKI_LINUX_BUILD "${PROJECT_SOURCE_DIR}/build/release" CACHE PATH "Has what the tests of the command talk to")
add_test(NAME command
    COMMAND ${Python3_EXECUTABLE} ${CMAKE_CURRENT_SOURCE_DIR}/windows/command_test.py
        $<TARGET_FILE:xls2tki_command> $<TARGET_FILE:load_test> ${XLS2TKI_LINUX_BUILD})
add_test(NAME dll
    COMMAND ${Python3_EXECUTABLE} ${CMAKE_CURRENT_SOURCE_DIR}/windows/dll_test.py
        ${CMAKE_RUNTIME_OUTPUT_DIRECTORY} ${PROJECT_VERSION})
