# What is installed, where to, and how packages are made of it. The version is that of project() everywhere.
#
# An installed tree may be moved: neither the CMake package nor the pkg-config file knows where it stands. On Windows it
# is the folder that one unpacks, with programs beside the library; elsewhere it is laid out as the system wants it.
# `cmake --install BUILD --component NAME` installs a part: library, development, examples or documentation.

set(VODREL_HEADER_FOLDER ${CMAKE_INSTALL_INCLUDEDIR}/VodrelCore)
set(VODREL_LIBRARY_FOLDER ${CMAKE_INSTALL_LIBDIR})
set(VODREL_CMAKE_FOLDER ${CMAKE_INSTALL_LIBDIR}/cmake/VodrelCore)
set(VODREL_PC_FOLDER ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
set(VODREL_DOC_FOLDER ${CMAKE_INSTALL_DOCDIR})
set(VODREL_EXAMPLE_FOLDER ${CMAKE_INSTALL_DOCDIR}/examples)
set(VODREL_PROGRAM_FOLDER ${CMAKE_INSTALL_LIBDIR}/vodrelcore/examples)
if(WIN32)
    set(VODREL_DOC_FOLDER .)
    set(VODREL_EXAMPLE_FOLDER examples)
    set(VODREL_PROGRAM_FOLDER ${CMAKE_INSTALL_BINDIR}) # a program finds its DLLs beside itself
endif()

# ---- The library, and the version in the properties of its file

install(TARGETS VodrelCore EXPORT VodrelCoreTargets
    LIBRARY DESTINATION ${VODREL_LIBRARY_FOLDER} COMPONENT library NAMELINK_COMPONENT development
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library
    ARCHIVE DESTINATION ${VODREL_LIBRARY_FOLDER} COMPONENT development)

if(WIN32)
    enable_language(RC)
    configure_file(cmake/version.rc.in version.rc @ONLY)
    target_sources(VodrelCore PRIVATE ${PROJECT_BINARY_DIR}/version.rc)
endif()

# ---- For those who compile against it

file(STRINGS cmake/public-headers.txt VODREL_PUBLIC_HEADERS)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS cmake/public-headers.txt)
foreach(header ${VODREL_PUBLIC_HEADERS})
    get_filename_component(folder ${header} DIRECTORY)
    install(FILES src/${header} DESTINATION ${VODREL_HEADER_FOLDER}/${folder} COMPONENT development)
endforeach()

install(EXPORT VodrelCoreTargets NAMESPACE VodrelCore:: FILE VodrelCoreConfig.cmake
    DESTINATION ${VODREL_CMAKE_FOLDER} COMPONENT development)
write_basic_package_version_file(VodrelCoreConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/VodrelCoreConfigVersion.cmake
    DESTINATION ${VODREL_CMAKE_FOLDER} COMPONENT development)

file(RELATIVE_PATH VODREL_PREFIX_FROM_PC /prefix/${VODREL_PC_FOLDER} /prefix)
string(REGEX REPLACE "/$" "" VODREL_PREFIX_FROM_PC ${VODREL_PREFIX_FROM_PC})
set(VODREL_LINKED_AS VodrelCore)
if(MINGW)
    set(VODREL_LINKED_AS :libVodrelCore.dll.a) # a program that is linked with -static doesn't find it by the short name
endif()
configure_file(cmake/vodrelcore.pc.in vodrelcore.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/vodrelcore.pc DESTINATION ${VODREL_PC_FOLDER} COMPONENT development)

# ---- To read and to copy from

install(FILES README.md CHANGELOG.md DESTINATION ${VODREL_DOC_FOLDER} COMPONENT documentation)
install(DIRECTORY docs/ DESTINATION ${VODREL_DOC_FOLDER}/docs COMPONENT documentation FILES_MATCHING PATTERN "*.md")
install(DIRECTORY examples/ DESTINATION ${VODREL_EXAMPLE_FOLDER} COMPONENT examples)
if(VODREL_BUILD_EXAMPLES)
    get_property(programs DIRECTORY examples PROPERTY BUILDSYSTEM_TARGETS)
    install(TARGETS ${programs} RUNTIME DESTINATION ${VODREL_PROGRAM_FOLDER} COMPONENT examples)
endif()

# ---- Packages: for Debian the library by itself and what developers need; for Windows one archive of all

if(NOT VODREL_TOP_LEVEL)
    return()
endif()

set(CPACK_PACKAGE_NAME ${PROJECT_NAME})
set(CPACK_PACKAGE_VENDOR "the ${PROJECT_NAME} project")
set(CPACK_PACKAGE_CONTACT "the ${PROJECT_NAME} project")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL library development examples documentation)

if(WIN32)
    set(CPACK_GENERATOR ZIP)
    set(CPACK_SYSTEM_NAME win64)
else()
    set(CPACK_GENERATOR DEB)
    include(cmake/DebianPackages.cmake)
endif()
include(CPack)
