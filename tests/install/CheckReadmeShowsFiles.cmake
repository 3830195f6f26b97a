# Fails unless README contains each of FILES word for word (as the body of a
# fenced code block).
#   cmake -DREADME=... "-DFILES=a;b" -P CheckReadmeShowsFiles.cmake
file(READ ${README} readme)
foreach(path IN LISTS FILES)
    file(READ ${path} content)
    string(FIND "${readme}" "\n${content}```" at)
    if(at EQUAL -1)
        message(FATAL_ERROR "README.md does not show ${path} as it is; copy the file into its code block")
    endif()
endforeach()
message(STATUS "README.md shows every file as it is")
