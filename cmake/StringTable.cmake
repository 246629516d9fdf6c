# cmake -D TEXTS=<text file> -D RESOURCE=<file to write> -P StringTable.cmake
#
# Turns a file of texts (a line per text: number, one space or tab, text; "#" starts a comment
# line; \n, \t and \\ are escapes) into the source of a Windows string table. The escapes of both
# are the same; a quote is doubled there. The strings have no L prefix, with which windres would
# treat their bytes as characters, whatever the code page.
file(READ ${TEXTS} texts)
string(ASCII 239 187 191 byteOrderMark)
string(REGEX REPLACE "^${byteOrderMark}" "" texts "${texts}")
string(REPLACE "\r" "" texts "\n${texts}\n")
string(REGEX REPLACE "\n#[^\n]*" "\n" texts "${texts}")
if(texts MATCHES "\n([^0-9\n][^\n]*|[0-9]+[^0-9 \t\n][^\n]*|[0-9]+)\n")
    message(FATAL_ERROR "${TEXTS}: no number and text: ${CMAKE_MATCH_1}")
endif()
string(REPLACE "\\\\" "" escapes "${texts}")
if(escapes MATCHES "[^\n]*\\\\[^nt][^\n]*")
    message(FATAL_ERROR "${TEXTS}: unknown escape: ${CMAKE_MATCH_0}")
endif()
string(REPLACE "\"" "\"\"" texts "${texts}")
string(REGEX REPLACE "\n([0-9]+)[ \t]([^\n]*)" "\n\\1 \"\\2\"" texts "${texts}")
file(WRITE ${RESOURCE}
    "#pragma code_page(65001)\nLANGUAGE 0, 0\nSTRINGTABLE\nBEGIN${texts}END\n")
