# The two packages that a user of Debian expects of a library: libvodrelcore0, which programs need to run, named after
# the library's SONAME, and libvodrelcore-dev with all that developers need, the examples and the documentation.

set(library libvodrelcore${PROJECT_VERSION_MAJOR})

set(CPACK_DEB_COMPONENT_INSTALL ON)
foreach(component development examples documentation)
    string(TOUPPER ${component} name)
    set(CPACK_COMPONENT_${name}_GROUP development)
endforeach()
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${library})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION "The shared library, which creates, finds, stores and reads the shots of
experiments: folders on a local or shared disk.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libvodrelcore-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "What it takes to develop with the library: headers for C and C++,
files for CMake and pkg-config, documentation, and examples, compiled and to copy from.")

# Which versions of the system's libraries are needed is found out by Debian's tool; without it they are only named.
find_program(VODREL_SHLIBDEPS dpkg-shlibdeps)
mark_as_advanced(VODREL_SHLIBDEPS)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${library} (= ${PROJECT_VERSION})")
if(VODREL_SHLIBDEPS)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
else()
    set(CPACK_DEBIAN_LIBRARY_PACKAGE_DEPENDS "libc6, libgcc-s1, libstdc++6")
endif()
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON) # a program's package that needs the library then depends on its package
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
