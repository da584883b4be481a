# Writes a C++ source with the text of scripts and styles: cmake -D OUTPUT=FILE -D "SOURCES=a.js;view.css" -P this file.
# Indents, comments and the blanks around = and => are left out: they would be a fifth of a page's code. No text in a
# script may hold such blanks.
set(entries "")
foreach(source IN LISTS SOURCES)
    get_filename_component(name "${source}" NAME_WE)
    get_filename_component(ending "${source}" EXT)
    if(ending STREQUAL ".css")
        string(APPEND name ".css")
    endif()
    file(READ "${source}" text)
    string(REGEX REPLACE "(^|\n) +" "\\1" text "${text}")
    string(REGEX REPLACE "(^|\n)//[^\n]*" "\\1" text "${text}")
    string(REGEX REPLACE " +// [^\n\"`]*\n" "\n" text "${text}")
    string(REPLACE " = " "=" text "${text}")
    string(REPLACE " => " "=>" text "${text}")
    string(REGEX REPLACE "\n\n+" "\n" text "${text}")
    string(REGEX REPLACE "^\n" "" text "${text}")
    string(APPEND entries "    {\"${name}\", R\"kxtext(${text})kxtext\"},\n")
endforeach()
file(WRITE "${OUTPUT}" "// Made from the styles and scripts of pages.
#include \"report/elements/frame.h\"

namespace kxreport {

namespace {

struct Source {
    const char* name;
    const char* text;
};

const Source kSources[] = {
${entries}};

} // namespace

QByteArray pageSource(const QString& name) {
    for (const Source& source : kSources) {
        if (name == QLatin1String(source.name)) {
            return source.text;
        }
    }
    return {};
}

} // namespace kxreport
")
