// What any program that reads these files with expat has to pay: every file is read and parsed with handlers that do
// nothing. The whole-process benchmark compares against it.

#include <expat.h>

#include <cstdio>
#include <fstream>
#include <string>

namespace {

void startElement(void*, const XML_Char*, const XML_Char**) {}
void endElement(void*, const XML_Char*) {}

bool parseFile(const char* path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return false;
    }
    std::string text(static_cast<std::size_t>(file.seekg(0, std::ios::end).tellg()), 0);
    file.seekg(0).read(text.data(), static_cast<std::streamsize>(text.size()));
    XML_Parser parser = XML_ParserCreate("UTF-8");
    XML_SetElementHandler(parser, startElement, endElement);
    const bool parsed = XML_Parse(parser, text.data(), static_cast<int>(text.size()), 1) == XML_STATUS_OK;
    XML_ParserFree(parser);
    return parsed;
}

}  // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        if (!parseFile(argv[i])) {
            std::fprintf(stderr, "bareExpat: %s does not parse\n", argv[i]);
            return 1;
        }
    }
    return 0;
}
