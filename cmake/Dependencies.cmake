find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
find_package(ICU REQUIRED COMPONENTS uc i18n)
find_package(simdjson REQUIRED)
find_package(OpenSSL REQUIRED COMPONENTS Crypto)

if(BUILD_TESTING OR NOT DEFINED BUILD_TESTING)
    find_package(GTest REQUIRED)
endif()

if(NOT VARNET_CORE_ONLY)
    find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Qml Quick QuickControls2 Network WebSockets DBus Svg
        LinguistTools)
    find_package(QCoro6 REQUIRED COMPONENTS Core Network DBus WebSockets)
    pkg_check_modules(PIPEWIRE REQUIRED IMPORTED_TARGET libpipewire-0.3)
    pkg_check_modules(FFMPEG REQUIRED IMPORTED_TARGET libavformat libavcodec libswresample libavutil)
    pkg_check_modules(SOUNDTOUCH REQUIRED IMPORTED_TARGET soundtouch)
    pkg_check_modules(XCB REQUIRED IMPORTED_TARGET xcb)
    pkg_check_modules(POCKETSPHINX REQUIRED IMPORTED_TARGET pocketsphinx sphinxbase)
    qt_standard_project_setup()
    # moc of Qt 6.4 cannot read libstdc++'s <concepts>, which <compare> includes.
    set(CMAKE_AUTOMOC_MOC_OPTIONS -D_GLIBCXX_CONCEPTS)
endif()
