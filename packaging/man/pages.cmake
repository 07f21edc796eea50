# Fills in the version and the commands: cmake -DIN= -DOUT= -DVERSION= -DCOMMANDS= -P pages.cmake
file(READ ${COMMANDS} commands)
foreach(page telvo.1 telvo-cli.1)
    configure_file(${IN}/${page}.in ${OUT}/${page} @ONLY)
endforeach()
