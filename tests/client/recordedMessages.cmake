# Writes OUTPUT: for every message that the generated ADAPTOR declares, an override that passes it
# on to take() with the names of its arguments and their values.
file(READ ${ADAPTOR} adaptor)
string(REGEX MATCHALL "virtual [^;]* = 0" declarations "${adaptor}")
set(overrides "")
foreach(declaration IN LISTS declarations)
  string(REGEX MATCH "^virtual (.*) ([A-Za-z0-9_]+)\\((.*)\\)" matched "${declaration}")
  set(result ${CMAKE_MATCH_1})
  set(member ${CMAKE_MATCH_2})
  set(parameters "${CMAKE_MATCH_3}")
  string(REGEX REPLACE "const [^&]*& " "" arguments "${parameters}")
  string(REGEX REPLACE "([A-Za-z0-9_]+)" "\"\\1\"" names "${arguments}")
  string(APPEND overrides "${result} ${member}(${parameters}) override {\n"
                          "  return take<${result}>(__func__, {${names}}, std::tie(${arguments}));\n}\n")
endforeach()
file(WRITE ${OUTPUT} "${overrides}")
