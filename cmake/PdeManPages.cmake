# SPDX-License-Identifier: MIT
# Man pages, made at build time by help2man from each program's own --help,
# so that a page never disagrees with its program. What --help does not say
# (the NAME line, environment, files, examples, see also) comes from
# man/<program>.h2m, help2man's include format.

find_program(PDE_HELP2MAN help2man)
pde_require(PDE_HELP2MAN "help2man" "help2man")
find_program(PDE_GZIP gzip REQUIRED)

# pde_add_man_pages(<program target>...)
# A section 1 page per program: <build>/man/<program>.1 (for tests) and its
# gzip -9n copy, which is installed. The pages are listed in the global
# property PDE_MAN_PAGES. Stops the configuration when a program has no
# man/<program>.h2m.
function(pde_add_man_pages)
    foreach(program IN LISTS ARGN)
        set(source "${PROJECT_SOURCE_DIR}/man/${program}.h2m")
        if(NOT EXISTS "${source}")
            message(FATAL_ERROR "${program} has no man page: write ${source} "
                "(its [NAME] line and the sections its --help lacks)")
        endif()
        # Folders in the text follow the configured prefix.
        set(include "${PROJECT_BINARY_DIR}/man/${program}.h2m")
        configure_file("${source}" "${include}" @ONLY)
        set(page "${PROJECT_BINARY_DIR}/man/${program}.1")
        # The programs run without a display, and a sanitizer build's leak
        # report at exit is not part of the page.
        add_custom_command(OUTPUT "${page}" "${page}.gz"
            COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen ASAN_OPTIONS=detect_leaks=0
                "${PDE_HELP2MAN}" --no-info --section=1 --version-string=${PROJECT_VERSION}
                "--include=${include}" "--output=${page}" "$<TARGET_FILE:${program}>"
            COMMAND "${PDE_GZIP}" -9nkf "${page}"
            DEPENDS ${program} "${include}"
            COMMENT "Man page ${program}(1)"
            VERBATIM)
        install(FILES "${page}.gz" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
        list(APPEND pages "${page}")
    endforeach()
    add_custom_target(man_pages ALL DEPENDS ${pages})
    set_property(GLOBAL APPEND PROPERTY PDE_MAN_PAGES ${pages})
endfunction()
