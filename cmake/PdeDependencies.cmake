# SPDX-License-Identifier: MIT
# Finds every external dependency and stops with the Debian package to
# install when one is missing; scripts/setup-deps installs all of them.

function(pde_require found what package)
    if(NOT ${found})
        message(FATAL_ERROR
            "${what} was not found. Install the Debian package(s) ${package} "
            "(scripts/setup-deps installs everything the build needs).")
    endif()
endfunction()

find_package(Qt6 6.2 QUIET COMPONENTS Core Gui Network Widgets PrintSupport Test UiTools)
pde_require(Qt6_FOUND "Qt 6 (Core, Gui, Network, Widgets, PrintSupport, Test, UiTools)"
    "qt6-base-dev qt6-tools-dev")

find_package(Cups 2.2 QUIET)
pde_require(Cups_FOUND "libcups (with the PPD API)" "libcups2-dev")

find_package(Iconv QUIET)
pde_require(Iconv_FOUND "iconv" "libc6-dev")

find_package(PkgConfig QUIET)
pde_require(PKG_CONFIG_FOUND "pkg-config" "pkg-config")
pkg_check_modules(PLIST QUIET IMPORTED_TARGET libplist-2.0)
pde_require(PLIST_FOUND "libplist-2.0" "libplist-dev")

if(BUILD_TESTING)
    find_package(GTest QUIET)
    pde_require(GTest_FOUND "GoogleTest" "libgtest-dev")
    include(GoogleTest)
endif()

if(PDE_BUILD_BENCHMARKS AND NOT PDE_BUILD_FUZZERS)
    find_package(benchmark QUIET)
    pde_require(benchmark_FOUND "Google Benchmark" "libbenchmark-dev")
endif()
