# Tests of the Windows build run under wine, in a prefix of the build's own: a
# server is started before the first of them and ended behind the last.
set(emulatorProperties FIXTURES_REQUIRED wine)

# In front of a program in a list that a script runs.
string(REPLACE ";" "$<SEMICOLON>" emulatorWithoutProgram "${CMAKE_CROSSCOMPILING_EMULATOR}")
set(emulator "${emulatorWithoutProgram}$<SEMICOLON>")

list(GET CMAKE_CROSSCOMPILING_EMULATOR 0 wineScript)
list(GET CMAKE_CROSSCOMPILING_EMULATOR 1 winePrefix)
add_test(NAME wine/start COMMAND ${wineScript} ${winePrefix} start)
add_test(NAME wine/stop COMMAND ${wineScript} ${winePrefix} stop)
set_tests_properties(wine/start PROPERTIES FIXTURES_SETUP wine TIMEOUT 300)
set_tests_properties(wine/stop PROPERTIES FIXTURES_CLEANUP wine TIMEOUT 60)
