# Besides the tests for every system, those of the workbook engine, of ODBC through SQLite's driver and our own, and of
# the command.
find_package(GTest REQUIRED)
find_package(EXPAT REQUIRED)
find_library(SQLITE_ODBC_DRIVER NAMES libsqlite3odbc.so PATH_SUFFIXES odbc REQUIRED)
include(GoogleTest)

target_sources(rooms_test PRIVATE
    linux/platform_test.cpp
    linux/registry.cpp
    linux/servers.cpp
    linux/source_kinds.cpp
    odbc_test.cpp
    tables_test.cpp
    workbook_application_test.cpp
    workbook_test.cpp
    xls_test.cpp)
target_link_libraries(rooms_test PRIVATE xls2tki_workbook)
target_compile_definitions(rooms_test PRIVATE
    XLS2TKI_TEST_ODBC_DRIVER="${SQLITE_ODBC_DRIVER}"
    XLS2TKI_TEST_OWN_ODBC_DRIVER="$<TARGET_FILE:xls2tki-odbc>")
add_dependencies(rooms_test xls2tki-odbc)
target_link_options(rooms_test PRIVATE -Wl,--wrap=SQLGetData)

# The ODBC driver, from the inside and from the outside, as the driver manager loads it and alone.
add_executable(odbc_driver_test odbc_alone_test.cpp odbc_driver_test.cpp odbc_program_test.cpp)
target_link_libraries(odbc_driver_test PRIVATE xls2tki_odbc_room xls2tki_workbook GTest::gtest_main)
target_compile_definitions(odbc_driver_test PRIVATE XLS2TKI_TEST_OWN_ODBC_DRIVER="$<TARGET_FILE:xls2tki-odbc>")
add_dependencies(odbc_driver_test xls2tki-odbc)

# Conversions that the system fails, and the command as a part of the program. The system's functions are replaced for
# the libraries that the program loads, too: those of memory unless a sanitizer has replaced them already.
add_executable(faults_test linux/faults_test.cpp
    ${PROJECT_SOURCE_DIR}/cli/main.cpp $<TARGET_OBJECTS:xls2tki_command_line>)
set_source_files_properties(${PROJECT_SOURCE_DIR}/cli/main.cpp PROPERTIES COMPILE_DEFINITIONS main=CommandMain)
target_link_libraries(faults_test PRIVATE xls2tki_rooms xls2tki_workbook ZoLogging GTest::gtest_main)
target_compile_definitions(faults_test PRIVATE
    XLS2TKI_TEST_DATA="${CMAKE_CURRENT_SOURCE_DIR}/data"
    XLS2TKI_TEST_OWN_ODBC_DRIVER="$<TARGET_FILE:xls2tki-odbc>")
foreach(name open close fstat pread ftruncate write fopen fread fwrite fflush fclose fsync fchmod rename)
    target_link_options(faults_test PRIVATE -Wl,--export-dynamic-symbol=${name})
endforeach()
foreach(name AllocHandle SetEnvAttr DriverConnectW Disconnect ExecDirectW NumResultCols DescribeColW GetData Fetch
        GetDiagRecW)
    target_link_options(faults_test PRIVATE -Wl,--wrap=SQL${name})
endforeach()
if(XLS2TKI_SANITIZE)
    target_compile_definitions(faults_test PRIVATE XLS2TKI_SANITIZED)
    target_link_options(faults_test PRIVATE -Wl,--wrap=malloc -Wl,--wrap=calloc -Wl,--wrap=realloc)
    # GCC sees that delete ends in free, but not that new begins with malloc.
    target_compile_options(faults_test PRIVATE -Wno-mismatched-new-delete)
endif()
add_dependencies(faults_test xls2tki-odbc)

# Some tests ask for more memory than there is; the address sanitizer then has to behave like the system.
gtest_discover_tests(rooms_test NO_PRETTY_VALUES PROPERTIES ENVIRONMENT ASAN_OPTIONS=allocator_may_return_null=1)
gtest_discover_tests(host_test)
gtest_discover_tests(faults_test NO_PRETTY_VALUES)
gtest_discover_tests(odbc_driver_test NO_PRETTY_VALUES)
add_test(NAME CHost.ConvertsAndLists
    COMMAND c_host_test ${CMAKE_CURRENT_SOURCE_DIR}/data ${CMAKE_CURRENT_BINARY_DIR} 1)

# What is installed, as others use it, and the driver in programs of others; they would need the sanitizers, too.
if(NOT XLS2TKI_SANITIZE)
    find_package(Python3 REQUIRED COMPONENTS Interpreter)
    add_test(NAME odbc_clients
        COMMAND Python3::Interpreter ${CMAKE_CURRENT_SOURCE_DIR}/odbc_clients_test.py $<TARGET_FILE:xls2tki-odbc>)
    set_tests_properties(odbc_clients PROPERTIES TIMEOUT 300)
    add_test(NAME install
        COMMAND Python3::Interpreter ${CMAKE_CURRENT_SOURCE_DIR}/install_test.py ${PROJECT_BINARY_DIR})
    set_tests_properties(install PROPERTIES TIMEOUT 300)
endif()

add_subdirectory(command)
