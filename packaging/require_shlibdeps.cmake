# Read by cpack before it makes a package.
foreach(program dpkg-shlibdeps file)
    find_program(FOUND_${program} ${program})
    if(NOT FOUND_${program})
        message(FATAL_ERROR "cpack needs ${program} to find what the package depends on "
            "(Debian packages dpkg-dev and file)")
    endif()
endforeach()
