# Writes the completion OUTPUT after TEMPLATE, with the names in the tables of commands at the end of
# the SOURCES.
set(commands "")
foreach(source IN LISTS SOURCES)
  file(STRINGS ${source} rows REGEX "^    {\"")
  foreach(row IN LISTS rows)
    string(REGEX MATCH "\"([^\"]*)\"" matched "${row}")
    string(APPEND commands "${CMAKE_MATCH_1} ")
  endforeach()
endforeach()
configure_file(${TEMPLATE} ${OUTPUT} @ONLY)
