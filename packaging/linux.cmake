# What there is on Linux alone: the ODBC driver, the man page and what shells complete.
install(TARGETS xls2tki-odbc DESTINATION ${CMAKE_INSTALL_LIBDIR}/odbc COMPONENT odbc_driver)

add_executable(xls2tki-manual
    manual/command_line.cpp
    manual/completions.cpp
    manual/main.cpp
    manual/man_page.cpp)
target_link_libraries(xls2tki-manual PRIVATE xls2tki_command_line)

set(manual_folder ${CMAKE_CURRENT_BINARY_DIR})
find_program(GZIP gzip REQUIRED)
add_custom_command(
    OUTPUT ${manual_folder}/xls2tki.1.gz
    BYPRODUCTS ${manual_folder}/xls2tki.bash ${manual_folder}/_xls2tki ${manual_folder}/xls2tki.fish
    COMMAND xls2tki-manual ${manual_folder}
    COMMAND ${GZIP} -9nf ${manual_folder}/xls2tki.1
    DEPENDS xls2tki-manual
    COMMENT "Writing the command's manual"
    VERBATIM)
add_custom_target(manual ALL DEPENDS ${manual_folder}/xls2tki.1.gz)

set(XLS2TKI_ZSH_COMPLETIONS ${CMAKE_INSTALL_DATADIR}/zsh/site-functions CACHE STRING
    "Where zsh looks for completions, relative to the prefix")
install(FILES ${manual_folder}/xls2tki.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT command)
install(FILES ${manual_folder}/xls2tki.bash RENAME xls2tki
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT command)
install(FILES ${manual_folder}/_xls2tki DESTINATION ${XLS2TKI_ZSH_COMPLETIONS} COMPONENT command)
install(FILES ${manual_folder}/xls2tki.fish
    DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT command)
