# What an installed program consists of, and the Debian package.
include(GNUInstallDirs)

# The built-in engine lies in the layout of a development engine; the system-wide settings name it, and a user's
# settings may name another.
set(runtime lib/varnet/runtime)
install(TARGETS varnet RUNTIME DESTINATION bin)
install(TARGETS nemo-speech RUNTIME DESTINATION ${runtime}/.runtime/source/build/metal-asr/bin)
install(FILES config/speech.yaml DESTINATION ${runtime}/config)
file(WRITE ${CMAKE_BINARY_DIR}/Varnet.conf "[General]\nRuntimeRoot=/usr/${runtime}\n")
install(FILES ${CMAKE_BINARY_DIR}/Varnet.conf DESTINATION /etc/xdg/Varnet)
install(PROGRAMS scripts/start-notes.sh DESTINATION lib/varnet/scripts)
install(FILES packaging/org.varnet.Varnet.desktop DESTINATION share/applications)
install(FILES packaging/org.varnet.Varnet.service DESTINATION share/dbus-1/services)
install(FILES packaging/org.varnet.Varnet.svg DESTINATION share/icons/hicolor/scalable/apps)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME varnet)
set(CPACK_PACKAGE_VENDOR Zelvik)
set(CPACK_PACKAGE_CONTACT "Varnet maintainers <maintainers@varnet.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Records meetings on this machine and transcribes them")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS
    "pipewire, wireplumber, pocketsphinx-en-us, libqt6svg6, qt6-qpa-plugins, qml6-module-qtquick, \
qml6-module-qtquick-controls, qml6-module-qtquick-layouts, qml6-module-qtquick-window, qml6-module-qtquick-templates, \
qml6-module-qtqml, qml6-module-qtqml-models, qml6-module-qtqml-workerscript, qml6-module-qtquick-shapes, \
qml6-module-qtcore, qml6-module-qtquick-dialogs, qml6-module-qt-labs-folderlistmodel")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/conffiles)
include(CPack)
