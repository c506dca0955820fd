# Completes the module-definition file that the linker wrote: with the DLL's name, and
# without ordinals, which change from version to version.
#
#     cmake -DFILE=... -DLIBRARY=name.dll -P definitionFile.cmake
file(READ ${FILE} text)
string(REGEX REPLACE " @[0-9]+" "" text "${text}")
file(WRITE ${FILE} "LIBRARY \"${LIBRARY}\"\n${text}")
