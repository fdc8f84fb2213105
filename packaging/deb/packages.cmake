# The packages for Debian, a component each; scripts/package makes them.
# Who makes them, from the variables by which Debian's own tools know.
if(DEFINED ENV{DEBEMAIL})
    set(maintainer "$ENV{DEBFULLNAME} <$ENV{DEBEMAIL}>")
else()
    set(maintainer "xls2tki maintainers <xls2tki@example.org>")
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME xls2tki)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT ${maintainer})
set(CPACK_COMPONENTS_ALL library development command odbc_driver)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
# In a checkout that is closed to others, the files for dpkg are, too.
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libxls2tki${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
# CPack would add scripts that call ldconfig, which the trigger does, and the package would not be gone when it is
# removed. The name of a script keeps CPack from writing it, though there is no such file.
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_SOURCE_DIR}/deb/triggers none/postinst none/postrm)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "tables of Diagnostic Trouble Codes to import documents - library
A host application calls it to turn a table of Diagnostic Trouble Codes, kept
as CSV or as an Excel workbook, into an XML import document.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libxls2tki-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS library)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "tables of Diagnostic Trouble Codes to import documents - development files
What a host application in C++, C or another language is built with: headers,
what CMake and pkg-config look for, and examples.")

set(CPACK_DEBIAN_COMMAND_PACKAGE_NAME xls2tki)
set(CPACK_DEBIAN_COMMAND_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_COMMAND_PACKAGE_SUGGESTS odbc-xls2tki)
set(CPACK_COMPONENT_COMMAND_DEPENDS library)
set(CPACK_COMPONENT_COMMAND_DESCRIPTION "tables of Diagnostic Trouble Codes to import documents - command
It turns a table of Diagnostic Trouble Codes, kept as CSV or as an Excel
workbook, into an XML import document.")

set(CPACK_DEBIAN_ODBC_DRIVER_PACKAGE_NAME odbc-xls2tki)
set(CPACK_DEBIAN_ODBC_DRIVER_PACKAGE_SECTION database)
set(CPACK_DEBIAN_ODBC_DRIVER_PACKAGE_DEPENDS odbcinst)
set(CPACK_COMPONENT_ODBC_DRIVER_DESCRIPTION "ODBC driver for Excel workbooks
Programs read the tables of Excel workbooks through it. It is in the list of
drivers, as one for Excel, while it is installed.")

# The list of drivers gets the driver when its package is installed, and loses it when that is removed.
set(driver ${CMAKE_INSTALL_FULL_LIBDIR}/odbc/libxls2tki-odbc.so)
configure_file(odbc/driver.ini driver.ini @ONLY)
file(READ ${CMAKE_CURRENT_BINARY_DIR}/driver.ini driver_entry)
string(REGEX MATCH "[^[]*\\]" driver_description "${driver_entry}")
string(REPLACE "]" "" driver_description "${driver_description}")
file(READ deb/unregister unregister)
string(CONFIGURE "${unregister}" unregister @ONLY)
foreach(script postinst prerm)
    configure_file(deb/${script}.in odbc_driver/${script} @ONLY FILE_PERMISSIONS
        OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
    list(APPEND CPACK_DEBIAN_ODBC_DRIVER_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_BINARY_DIR}/odbc_driver/${script})
endforeach()

# What every package of Debian has: a changelog and a copyright file.
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(deb/changelog.in changelog.Debian @ONLY)
execute_process(COMMAND ${GZIP} -9nf changelog.Debian WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}
    COMMAND_ERROR_IS_FATAL ANY)
configure_file(../CHANGELOG.md changelog COPYONLY)
execute_process(COMMAND ${GZIP} -9nf changelog WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}
    COMMAND_ERROR_IS_FATAL ANY)
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    string(TOUPPER ${component} name)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/changelog.Debian.gz ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz deb/copyright
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${name}_PACKAGE_NAME} COMPONENT ${component})
endforeach()

include(CPack)
