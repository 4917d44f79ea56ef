# cmake --install: the programs side by side, the guide with its pictures, and what a desktop needs to offer the program.
include(GNUInstallDirs)
foreach(program KTLCompany KTLStInsConsole KTLStIns)
  if(TARGET ${program})
    install(TARGETS ${program} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  endif()
endforeach()
install(FILES README.md CHANGELOG.md docs/users-guide.md docs/formulas.md docs/scripts.md
        DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs/pictures DESTINATION ${CMAKE_INSTALL_DOCDIR} FILES_MATCHING PATTERN *.png)
if(KTL_DESKTOP)
  install(FILES src/desktop/install/KTLStIns.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
  install(FILES src/desktop/install/KTLStIns.png
          DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/128x128/apps)
endif()
