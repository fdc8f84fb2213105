# Besides the tests for every system, those of the workbook engine, of ODBC through SQLite's driver and of the command.
find_package(GTest REQUIRED)
find_package(EXPAT REQUIRED)
find_library(SQLITE_ODBC_DRIVER NAMES libsqlite3odbc.so PATH_SUFFIXES odbc REQUIRED)
include(GoogleTest)

target_sources(rooms_test PRIVATE
    linux/platform_test.cpp
    linux/registry.cpp
    linux/servers.cpp
    odbc_test.cpp
    workbook_application_test.cpp
    workbook_test.cpp)
target_link_libraries(rooms_test PRIVATE xls2tki_workbook)
target_compile_definitions(rooms_test PRIVATE XLS2TKI_TEST_ODBC_DRIVER="${SQLITE_ODBC_DRIVER}")

target_sources(host_test PRIVATE linux/registry.cpp linux/xml_reader_test.cpp)
target_link_libraries(host_test PRIVATE EXPAT::EXPAT)

# Some tests ask for more memory than there is; the address sanitizer then has to behave like the system.
gtest_discover_tests(rooms_test NO_PRETTY_VALUES PROPERTIES ENVIRONMENT ASAN_OPTIONS=allocator_may_return_null=1)
gtest_discover_tests(host_test)

if(EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/command/CMakeLists.txt)
    add_subdirectory(command)
endif()
