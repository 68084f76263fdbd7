cmake_minimum_required(VERSION 3.25)
# Writes a text as a literal of UTF-16 without its comments of "/* */".
# cmake -DINPUT=... -DOUTPUT=... -P EmbedText.cmake
file(READ "${INPUT}" text)
string(REGEX REPLACE "/\\*[^*]*\\*/\n*" "" text "${text}")
file(WRITE "${OUTPUT}" "uR\"embedded(${text})embedded\"\n")
