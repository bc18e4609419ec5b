# `make deb`: a Debian package of the installed tree (see data/CMakeLists.txt) built by CPack.
# Depends = what dpkg-shlibdeps finds for the binary, plus what is loaded at run time and so
# invisible to it: Mesa's EGL and drivers, the QML modules of the gallery, Qt's Wayland platform.

# QML modules the gallery imports, with the ones those import in turn (QtQml brings Models and
# WorkerScript, Controls needs Templates).
set(QUELLTON_QML_PACKAGES
  qml6-module-qtquick
  qml6-module-qtquick-controls
  qml6-module-qtquick-layouts
  qml6-module-qtquick-window
  qml6-module-qtquick-templates
  qml6-module-qtquick-shapes
  qml6-module-qtqml
  qml6-module-qtqml-models
  qml6-module-qtqml-workerscript
  qml6-module-qt5compat-graphicaleffects)
# From Qt 6.8 on (Debian 13) the QML module itself (import QML) has a package of its own.
execute_process(COMMAND dpkg-query -W -f=\${Status} qml6-module-qml OUTPUT_VARIABLE qml_module_status ERROR_QUIET)
if(qml_module_status MATCHES "installed")
  list(APPEND QUELLTON_QML_PACKAGES qml6-module-qml)
endif()
set(QUELLTON_RUNTIME_PACKAGES libegl-mesa0 libgl1-mesa-dri qt6-wayland ${QUELLTON_QML_PACKAGES})
list(JOIN QUELLTON_RUNTIME_PACKAGES ", " runtime_depends)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quellton)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_VENDOR "Quellton")
set(CPACK_PACKAGE_CONTACT "Quellton <quellton@users.noreply.github.com>")
set(CPACK_PACKAGE_HOMEPAGE_URL "https://github.com/quellton/quellton")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "live desktop background that follows the music")
set(CPACK_PACKAGE_DESCRIPTION "\
Quellton turns the sound the computer plays into a live, animated desktop
background. It captures the system's audio output (not the microphone)
through PulseAudio or PipeWire and draws one of 97 OpenGL visualizations
behind the desktop icons, on one or all screens.

A gallery window and a tray menu choose the visualization, a mix that
changes on a timer or on the beat, the colour world, the reaction strength
and the quality.")
set(CPACK_PACKAGING_INSTALL_PREFIX "/usr")
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "${runtime_depends}")
# On KDE Plasma our wallpaper plugin shows the picture through kpipewire's QML module.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "pipewire-pulse | pulseaudio, qml-module-org-kde-pipewire")
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

include(CPack)
