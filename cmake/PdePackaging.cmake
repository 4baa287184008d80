# SPDX-License-Identifier: MIT
# Installation and the Debian packages. Included before the subsystem folders
# (install components, run path, pde_install_conffile); pde_add_packages()
# after them describes the packages.
#
# The packages are split as Debian splits a library with its programs:
#   jobtype-pde    component runtime:     the hosts, the bundle, libpdekit.so.N,
#                                         man pages, desktop entries, examples
#   libpdekit-dev  component development: headers, the libpdekit.so link,
#                                         pdekit.pc, the CMake package pdekit,
#                                         the hello-panel example
# `cmake --workflow --preset package` configures for /usr, builds, and leaves
# both .deb files in build/package/.

# What an install rule names no component for goes to the runtime package.
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME runtime)

# Installed programs and modules find libpdekit through a run path, except in
# a folder the loader searches anyway, where Debian forbids one.
if(CMAKE_INSTALL_FULL_LIBDIR IN_LIST CMAKE_CXX_IMPLICIT_LINK_DIRECTORIES)
    set(CMAKE_INSTALL_RPATH "")
else()
    set(CMAKE_INSTALL_RPATH "${CMAKE_INSTALL_FULL_LIBDIR}")
endif()

# pde_install_conffile(<file> <folder>)
# Installs <file> into <folder> of the system configuration folder (/etc with
# the prefix /usr) and makes it a conffile of the runtime package, which dpkg
# keeps when an administrator changed it and removes only on purge.
function(pde_install_conffile file folder)
    set(destination "${CMAKE_INSTALL_FULL_SYSCONFDIR}/${folder}")
    install(FILES "${file}" DESTINATION "${destination}" COMPONENT runtime)
    get_filename_component(name "${file}" NAME)
    set_property(GLOBAL APPEND PROPERTY PDE_CONFFILES "${destination}/${name}")
endfunction()

# pde_add_packages()
# The packages' own files (copyright, changelog, examples, control files) and
# their description for CPack.
function(pde_add_packages)
    set(runtime_package jobtype-pde)
    set(development_package libpdekit-dev)
    set(debian_revision 1)
    set(sources "${PROJECT_SOURCE_DIR}/cmake/debian")
    set(control "${PROJECT_BINARY_DIR}/debian")

    # Debian's documentation of every package: the machine-readable
    # copyright and the changelog, compressed as policy asks (gzip -9n).
    configure_file("${sources}/changelog" "${control}/changelog.Debian" COPYONLY)
    find_program(PDE_GZIP gzip REQUIRED)
    execute_process(COMMAND "${PDE_GZIP}" -9nf "${control}/changelog.Debian" COMMAND_ERROR_IS_FATAL ANY)
    foreach(pair runtime:${runtime_package} development:${development_package})
        string(REPLACE ":" ";" pair "${pair}")
        list(GET pair 0 component)
        list(GET pair 1 package)
        install(FILES "${sources}/copyright" "${control}/changelog.Debian.gz"
            DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${package}" COMPONENT ${component})
    endforeach()

    # The example printer of the README, and the panel of a second vendor
    # that is built against the installed SDK.
    install(FILES "${PROJECT_SOURCE_DIR}/examples/example-mfp.ppd" "${PROJECT_SOURCE_DIR}/examples/quarterly-report.txt"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${runtime_package}/examples" COMPONENT runtime)
    install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples/hello-panel"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${development_package}/examples" COMPONENT development
        REGEX "/build[^/]*$" EXCLUDE)

    # libpdekit.so.N is a public library: the loader cache is renewed when it
    # comes or goes. Files under /etc are conffiles.
    file(WRITE "${control}/triggers" "activate-noawait ldconfig\n")
    set(runtime_control "${control}/triggers")
    get_property(conffiles GLOBAL PROPERTY PDE_CONFFILES)
    if(conffiles)
        list(JOIN conffiles "\n" conffiles)
        file(WRITE "${control}/conffiles" "${conffiles}\n")
        list(APPEND runtime_control "${control}/conffiles")
    endif()

    set(CPACK_GENERATOR DEB)
    set(CPACK_PACKAGE_NAME ${runtime_package})
    set(CPACK_PACKAGE_VENDOR "Job-type PDE developers")
    set(CPACK_PACKAGE_CONTACT "Job-type PDE developers <pde-maintainers@example.org>")
    set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
    # Each package's description starts with its own synopsis line, which
    # CPack would otherwise take from the project's description for both.
    set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
    # The hosts look for bundles where the build put them, so a package is only
    # right when the tree was configured for /usr (checked when cpack runs).
    set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
    set(CPACK_PROJECT_CONFIG_FILE "${control}/CPackChecks.cmake")
    set(CPACK_STRIP_FILES ON)
    set(CPACK_DEB_COMPONENT_INSTALL ON)
    set(CPACK_COMPONENTS_ALL runtime development)
    set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS runtime)
    set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(CPACK_DEBIAN_PACKAGE_RELEASE ${debian_revision})
    set(CPACK_DEBIAN_PACKAGE_SOURCE ${runtime_package})
    set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    # shlibs: a program built against libpdekit 0 needs this version or later.
    set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
    set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
    set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

    set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtime_package})
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION utils)
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${runtime_control}")
    set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "job-type panel for the print dialog of CUPS printers
The job-type panel of office multifunction printers: a print dialog extension
in which the user chooses an ordinary, secure (held until released at the
printer with a password), sample or public print, and enters a user ID,
password and document name that travel with the job as CUPS job options.
.
The package holds the panel's bundle, the platform layer libpdekit that
extension panels run on, and two hosts: pde-host, which drives panels from
the command line, and pde-print, a Qt print dialog with the panels in it.")

    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${development_package})
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "qt6-base-dev, libcups2-dev")
    set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "development files of libpdekit, for print dialog extension panels
libpdekit is the platform layer on which print dialog extension panels run:
the protocol between host and panels, bundles with localized strings tables,
print settings, alerts, help books and nibs (Qt Designer files that declare
objects, outlets, actions and bindings).
.
This package holds the headers, the CMake package pdekit (imported target
pdekit::pdekit), the pkg-config file pdekit.pc, and the example panel
hello-panel of a second vendor.")

    configure_file("${sources}/CPackChecks.cmake.in" "${control}/CPackChecks.cmake" @ONLY)
    include(CPack)
endfunction()
