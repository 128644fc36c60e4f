# Writes the header HEADER after TEMPLATE, with the names in the protocol's file XML, and BARE_XML,
# which is XML without the annotations that code generators don't know.
include(${CMAKE_CURRENT_LIST_DIR}/messages.cmake)
set(NAMES "")
foreach(member IN LISTS MEMBERS)
  string(APPEND NAMES "    {\"${member}\", \"${Selector_${member}}\", ${Answers_${member}}},\n")
endforeach()
configure_file(${TEMPLATE} ${HEADER} @ONLY)

string(REGEX REPLACE " *<annotation name=\"org\\.plotwerk\\.[^>]*>\n" "" bare "${xml}")
string(REPLACE "${SEMICOLON}" ";" bare "${bare}")
file(WRITE ${BARE_XML} "${bare}")
