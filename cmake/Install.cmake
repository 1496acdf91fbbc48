# The installed layout (under any prefix; the programs find share/qmv and lib/qmv from
# their own bin/) and the Debian packages built from it by scripts/package:
#   qmv          the CLI, the shipped databases, its manual page and completion
#   qmv-gtk      the graphical client, its WebKit module (lib/qmv/modules), desktop entry, metainfo and icon
#   qmv-sandbox  the standalone sandbox server and its systemd user unit
include(GNUInstallDirs)

# `cmake --install` and cpack install what is built; scripts/package builds only the
# programs instead of every test and benchmark.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)

set(QMV_PACKAGE_MAINTAINER "qmv developers <maintainers@qmv.invalid>" CACHE STRING "Maintainer of the Debian packages")
set(QMV_HOMEPAGE "https://qmv.invalid/" CACHE STRING "Project home page named in the AppStream metainfo")
set(QMV_SCREENSHOT_URL "https://qmv.invalid/docs" CACHE STRING "Where the docs/*.png screenshots are published")

set(QMV_PACKAGING ${CMAKE_SOURCE_DIR}/packaging)
set(QMV_DOCS_OUT ${CMAKE_BINARY_DIR}/docs)

# Manual pages and completions come from the programs themselves; the sanitizer trees
# install nothing, so they skip running them.
set(QMV_DOC_PROGRAMS qmv qmv-sandbox)
if(TARGET qmv-gtk)
  list(APPEND QMV_DOC_PROGRAMS qmv-gtk)
endif()
set(QMV_DOC_OUTPUTS)
foreach(program IN LISTS QMV_DOC_PROGRAMS)
  add_custom_command(
    OUTPUT ${QMV_DOCS_OUT}/${program}.1.gz ${QMV_DOCS_OUT}/${program}.bash
    COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:${program}> -DNAME=${program} -DDIR=${QMV_DOCS_OUT}
            -P ${CMAKE_SOURCE_DIR}/cmake/program_docs.cmake
    DEPENDS ${program} ${CMAKE_SOURCE_DIR}/cmake/program_docs.cmake
    COMMENT "Writing ${program}'s manual page and completion"
    VERBATIM)
  list(APPEND QMV_DOC_OUTPUTS ${QMV_DOCS_OUT}/${program}.1.gz ${QMV_DOCS_OUT}/${program}.bash)
endforeach()
if(QMV_SANITIZE OR QMV_TSAN)
  add_custom_target(qmv_docs DEPENDS ${QMV_DOC_OUTPUTS})
else()
  add_custom_target(qmv_docs ALL DEPENDS ${QMV_DOC_OUTPUTS})
endif()

configure_file(${QMV_PACKAGING}/org.qmv.Client.metainfo.xml.in ${QMV_DOCS_OUT}/org.qmv.Client.metainfo.xml @ONLY)

# Each package's /usr/share/doc: the copyright and its changelog (gzipped as Debian wants).
function(qmv_package_docs component package)
  set(QMV_CHANGELOG_PACKAGE ${package})
  configure_file(${QMV_PACKAGING}/changelog.in ${QMV_DOCS_OUT}/${package}/changelog @ONLY)
  execute_process(COMMAND gzip -9nf ${QMV_DOCS_OUT}/${package}/changelog COMMAND_ERROR_IS_FATAL ANY)
  install(FILES ${QMV_PACKAGING}/copyright ${QMV_DOCS_OUT}/${package}/changelog.gz
          DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} COMPONENT ${component})
endfunction()

# qmv
install(TARGETS qmv RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT cli)
install(FILES ${CMAKE_BINARY_DIR}/resources/area.db ${CMAKE_BINARY_DIR}/resources/bank_card_bin.db
              ${CMAKE_BINARY_DIR}/resources/map.db
        DESTINATION ${CMAKE_INSTALL_DATADIR}/qmv COMPONENT cli)
install(FILES ${QMV_DOCS_OUT}/qmv.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT cli)
install(FILES ${QMV_DOCS_OUT}/qmv.bash RENAME qmv
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT cli)
qmv_package_docs(cli qmv)

# qmv-sandbox
install(TARGETS qmv-sandbox RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT sandbox)
install(FILES ${QMV_DOCS_OUT}/qmv-sandbox.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT sandbox)
install(FILES ${QMV_DOCS_OUT}/qmv-sandbox.bash RENAME qmv-sandbox
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT sandbox)
# The unit names the program by the prefix it is installed under (cpack's /usr, or
# cmake --install --prefix), known only then.
install(CODE "
  set(QMV_BINDIR \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}\")
  set(unit \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/lib/systemd/user/qmv-sandbox.service\")
  message(STATUS \"Installing: \${unit}\")
  configure_file(\"${QMV_PACKAGING}/qmv-sandbox.service.in\" \"\${unit}\" @ONLY)
" COMPONENT sandbox)
qmv_package_docs(sandbox qmv-sandbox)

# qmv-gtk
if(TARGET qmv-gtk)
  install(TARGETS qmv-gtk RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT gtk)
  if(TARGET qmv_gtk_webkit)
    # A private module, loaded by path: not executable, and in a folder of its own, where
    # the package does not run ldconfig for it.
    install(TARGETS qmv_gtk_webkit LIBRARY DESTINATION lib/qmv/modules COMPONENT gtk
            PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
  endif()
  install(FILES ${QMV_DOCS_OUT}/qmv-gtk.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT gtk)
  install(FILES ${QMV_DOCS_OUT}/qmv-gtk.bash RENAME qmv-gtk
          DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT gtk)
  install(FILES ${CMAKE_SOURCE_DIR}/apps/gtk/org.qmv.Client.desktop
          DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT gtk)
  install(FILES ${QMV_DOCS_OUT}/org.qmv.Client.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT gtk)
  install(FILES ${QMV_PACKAGING}/org.qmv.Client.svg
          DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT gtk)
  qmv_package_docs(gtk qmv-gtk)
endif()

# Debian packages, one per component.
set(CPACK_PACKAGE_NAME qmv)
set(CPACK_PACKAGE_VENDOR "qmv developers")
set(CPACK_PACKAGE_CONTACT "${QMV_PACKAGE_MAINTAINER}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${QMV_PACKAGE_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${QMV_HOMEPAGE}")
set(CPACK_DEBIAN_CLI_PACKAGE_NAME qmv)
set(CPACK_DEBIAN_CLI_PACKAGE_SECTION net)
set(CPACK_DEBIAN_GTK_PACKAGE_NAME qmv-gtk)
set(CPACK_DEBIAN_GTK_PACKAGE_SECTION net)
set(CPACK_DEBIAN_SANDBOX_PACKAGE_NAME qmv-sandbox)
set(CPACK_DEBIAN_SANDBOX_PACKAGE_SECTION net)
# The client and the sandbox read the shipped databases of the qmv package.
set(CPACK_DEBIAN_GTK_PACKAGE_DEPENDS "qmv (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_SANDBOX_PACKAGE_DEPENDS "qmv (= ${PROJECT_VERSION})")
# The client switches GTK's and WebKit's own texts to Chinese when a zh_CN.UTF-8 locale
# is there; without one it runs, with those texts in the desktop's language.
set(CPACK_DEBIAN_GTK_PACKAGE_RECOMMENDS "locales-all")
set(CPACK_COMPONENTS_ALL cli sandbox)
if(TARGET qmv-gtk)
  list(APPEND CPACK_COMPONENTS_ALL gtk)
endif()
set(CPACK_COMPONENT_CLI_DESCRIPTION "client of a local-life services platform (command line)
qmv signs a member in with a mobile number, browses the shops and time-limited
offers of a city by category, keyword or map, buys and pays for them, and
manages a wallet, a bank card, referrals and a prize wheel. Without a server it
runs against an embedded sandbox with a demo world.
.
This package holds the command-line client and the shipped area and bank card
databases that the other qmv packages read.")
set(CPACK_COMPONENT_GTK_DESCRIPTION "client of a local-life services platform (GTK, phones and desktops)
The GTK 4 and libadwaita front end of qmv, for Linux phones and desktops: the
same client, home and embedded sandbox as the qmv command, with a desktop entry
that handles the application's qqqmmmvvv:// URLs.")
set(CPACK_COMPONENT_SANDBOX_DESCRIPTION "demo server for the qmv client
qmv-sandbox speaks the qmv application server's HTTP contract over a demo
world, for clients on other machines or as a systemd user service
(systemctl --user start qmv-sandbox).")
include(CPack)
