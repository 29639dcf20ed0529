# What an installed program consists of, and the Debian package.
include(GNUInstallDirs)

# The built-in engine lies in the layout of a development engine; the system-wide settings name it, and a user's
# settings may name another.
set(runtime lib/varnet/runtime)
install(TARGETS varnet RUNTIME DESTINATION bin)
install(TARGETS varnet_media LIBRARY DESTINATION lib/varnet)
install(TARGETS nemo-speech RUNTIME DESTINATION ${runtime}/.runtime/source/build/metal-asr/bin)
install(FILES config/speech.yaml DESTINATION ${runtime}/config)
file(WRITE ${CMAKE_BINARY_DIR}/Varnet.conf "[General]\nRuntimeRoot=/usr/${runtime}\n")
install(FILES ${CMAKE_BINARY_DIR}/Varnet.conf DESTINATION /etc/xdg/Varnet)
install(PROGRAMS scripts/start-notes.sh DESTINATION lib/varnet/scripts)
install(FILES packaging/org.varnet.Varnet.desktop DESTINATION share/applications)
install(FILES packaging/org.varnet.Varnet.service DESTINATION share/dbus-1/services)
install(FILES packaging/org.varnet.Varnet.metainfo.xml DESTINATION share/metainfo)
install(FILES LICENSE DESTINATION share/doc/varnet RENAME copyright)

# The icon as a drawing, and in the sizes for desktops that take pictures only. The sizes that are no multiple of 16 have
# a drawing of their own; in the one of 24 it has the margin that is usual there.
set(drawing ${PROJECT_SOURCE_DIR}/packaging/org.varnet.Varnet)
find_program(RSVG_CONVERT rsvg-convert REQUIRED)
foreach(size IN ITEMS 16 22 24 32 48 64 128 256 512)
    set(picture ${CMAKE_BINARY_DIR}/icons/${size}.png)
    set(source ${drawing}.svg)
    set(arguments --width ${size} --height ${size})
    if(size EQUAL 22 OR size EQUAL 24)
        math(EXPR margin "(${size} - 22) / 2")
        set(source ${drawing}-22.svg)
        set(arguments --page-width ${size} --page-height ${size} --left ${margin} --top ${margin})
    endif()
    add_custom_command(OUTPUT ${picture} COMMAND ${RSVG_CONVERT} ${arguments} --output ${picture} ${source}
        DEPENDS ${source} VERBATIM)
    list(APPEND pictures ${picture})
    install(FILES ${picture} DESTINATION share/icons/hicolor/${size}x${size}/apps RENAME org.varnet.Varnet.png)
endforeach()
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/icons)
add_custom_target(icons ALL DEPENDS ${pictures})
install(FILES ${drawing}.svg DESTINATION share/icons/hicolor/scalable/apps)
install(FILES ${drawing}-symbolic.svg DESTINATION share/icons/hicolor/symbolic/apps)
install(DIRECTORY packaging/tray/ DESTINATION share/icons/hicolor/symbolic/apps)

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
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "Zelvik records the microphone and the sound of the others in a call as two\naligned tracks, shows the words while \
people talk, and tells the speakers\napart. Audio, transcripts and notes stay on this computer.")
# What the program needs to run stands in scripts/setup.sh; the libraries that it is linked to are found by themselves.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS scripts/setup.sh)
file(READ scripts/setup.sh setup)
string(REGEX MATCH "\\[run\\]=\"([^\"]*)\"" run_group "${setup}")
string(REGEX REPLACE "[ \n]+" ", " CPACK_DEBIAN_PACKAGE_DEPENDS "${CMAKE_MATCH_1}")
# The window on Wayland; icons; folders and the actions of the entry where the desktop itself has nothing for them; the
# desktop's preferences and file dialogs.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland, hicolor-icon-theme, xdg-utils, libglib2.0-bin, xdg-desktop-portal")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/conffiles)
include(CPack)
