#include <cstdio>
#include <memory>
#include <set>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXFunctionalityCore/HBXFunctionalityCore.h>

/// Prints what the vocabulary file named on the command line offers for both tags.
int main(int argc, char** argv) {
    const std::string file = argc > 1 ? argv[1] : "hbagent.voc.windows";
    HBX::HBXVocPrototype voc;
    if (voc.readFromFile(file) != 0) {
        std::fprintf(stderr, "%s\n", HBX::getErrorMessage().c_str()); // path, line, column, reason
        return 1;
    }
    const std::set<std::string> tags{"container", "network"};
    const std::unique_ptr<HBX::HBXVocIterator> it(voc.readCategory(tags));
    for (int found = it ? it->firstParameter() : -1; found == 0; found = it->nextParameter()) {
        std::string id;
        it->getID(id);
        std::printf("%s\n", id.c_str());
    }
}
