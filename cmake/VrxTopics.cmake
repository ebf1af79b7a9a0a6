# vrx_topics(<source> <name>=<document>...)
#
# Writes a source that holds documents of docs/ as the texts of the program's help on file formats, under these names.
function(vrx_topics source)
    set(rows "")
    foreach(topic IN LISTS ARGN)
        string(REPLACE "=" ";" pair "${topic}")
        list(GET pair 0 name)
        list(GET pair 1 document)
        set(path "${PROJECT_SOURCE_DIR}/docs/${document}.md")
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${path}")
        file(READ "${path}" text)
        string(APPEND rows "    Topic{\"${name}\", R\"TOPIC(${text})TOPIC\"},\n")
    endforeach()
    string(CONCAT content "#include \"cli/manual/Topics.h\"\n\nnamespace vrx::cli {\n\n"
           "namespace {\nconstexpr Topic TOPICS[] = {\n${rows}};\n}  // namespace\n\n"
           "std::span<const Topic> topics() { return TOPICS; }\n\n}  // namespace vrx::cli\n")
    file(CONFIGURE OUTPUT "${source}" CONTENT "${content}" @ONLY)
endfunction()
