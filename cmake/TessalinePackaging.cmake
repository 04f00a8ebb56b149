# The Debian package, built with `cpack` from a release build (scripts/package does both). It
# installs to /usr; the runtime libraries it needs are read from the binaries by
# dpkg-shlibdeps, while what is loaded at run time (QML modules, Qt plugins, the accessibility
# bus) is named here.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tessaline)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_VENDOR "The Tessaline developers")
set(CPACK_PACKAGE_CONTACT "The Tessaline developers <hello@tessaline.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
    "cheat sheet of keyboard shortcuts for the app you were just using")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://tessaline.org/")
# The summary above is the description's first line; this is the rest.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "Tessaline lives in the tray and keeps a vault of keyboard shortcuts. Its
hotkey or tray icon opens a floating cheat sheet with the shortcuts of the
application that was in front, searchable by name or chord. It can read
the menus of running applications to collect their shortcuts, shows
gentle tips and offers small text helpers.
.
The package also holds tessaline-vault, a command-line companion over the
same vault file.")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS
    "qml6-module-qtquick, qml6-module-qtquick-controls, qml6-module-qtquick-layouts, qml6-module-qtquick-templates, qml6-module-qtquick-window, qml6-module-qtqml-workerscript, qt6-qpa-plugins, libqt6svg6, at-spi2-core, hicolor-icon-theme")

include(CPack)
