# Makes the pages of the help: FILES (relative to SOURCE) into TARGET. CMARK is
# the converter; without one Markdown stays Markdown.

set(style [[
:root { color-scheme: light dark; }
body { font-family: sans-serif; line-height: 1.55; max-width: 48em; margin: 2em auto; padding: 0 1em; }
img { max-width: 100%; border: 1px solid gray; }
table { border-collapse: collapse; }
th, td { border: 1px solid gray; padding: .25em .6em; text-align: left; vertical-align: top; }
code, pre { font-family: monospace; }
pre { overflow-x: auto; border: 1px solid gray; padding: .6em; }
nav { border-bottom: 1px solid gray; padding-bottom: .4em; }
]])

# A link to the same page in the other language, and one to the first page.
function(navigation_of file result)
  set(${result} "" PARENT_SCOPE)
  get_filename_component(name ${file} NAME_WE)
  if(file MATCHES "^guide/ja/")
    set(other "../${name}.html\" lang=\"en\">English")
    set(first "README.html\">目次")
  elseif(file MATCHES "^guide/")
    set(other "ja/${name}.html\" lang=\"ja\">日本語")
    set(first "README.html\">Contents")
  else()
    return()
  endif()
  set(${result} "<nav><a href=\"${first}</a> | <a href=\"${other}</a></nav>\n" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE ${TARGET})
foreach(file ${FILES})
  get_filename_component(folder ${TARGET}/${file} DIRECTORY)
  file(MAKE_DIRECTORY ${folder})
  if(NOT CMARK OR NOT file MATCHES "[.]md$")
    file(COPY ${SOURCE}/${file} DESTINATION ${folder})
    continue()
  endif()
  execute_process(COMMAND ${CMARK} --extension table ${SOURCE}/${file}
    OUTPUT_VARIABLE body RESULT_VARIABLE failed)
  if(failed)
    message(FATAL_ERROR "${file}: not converted")
  endif()
  string(REGEX REPLACE "(href=\"[^\":]*)[.]md([\"#])" "\\1.html\\2" body "${body}")
  string(REGEX MATCH "<h1>([^\n]*)</h1>" heading "${body}")
  set(title "${CMAKE_MATCH_1}")
  set(language en)
  if(file MATCHES "^guide/ja/")
    set(language ja)
  endif()
  navigation_of(${file} navigation)
  string(REGEX REPLACE "[.]md$" ".html" page ${file})
  file(WRITE ${TARGET}/${page}
    "<!DOCTYPE html>\n<html lang=\"${language}\">\n<head>\n<meta charset=\"utf-8\">\n"
    "<meta name=\"viewport\" content=\"width=device-width\">\n<title>VEL: ${title}</title>\n"
    "<style>${style}</style>\n</head>\n<body>\n${navigation}${body}</body>\n</html>\n")
endforeach()
