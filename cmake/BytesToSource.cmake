# SPDX-License-Identifier: MIT
# cmake -D INPUT=... -D OUTPUT=... -D NAME=... -P BytesToSource.cmake: the bytes of a file as a C++ array and its size.
file(READ ${INPUT} BYTES HEX)
string(REGEX REPLACE "(..)" "0x\\1," BYTES "${BYTES}")
file(WRITE ${OUTPUT} "#include <cstddef>\n#include <cstdint>\n
extern const uint8_t ${NAME}[];\nextern const size_t ${NAME}Size;
const uint8_t ${NAME}[] = {${BYTES}};\nconst size_t ${NAME}Size = sizeof ${NAME};\n")
