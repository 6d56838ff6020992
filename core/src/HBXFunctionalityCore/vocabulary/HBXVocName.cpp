#include <HBXFunctionalityCore/vocabulary/HBXVocName.h>

#include <HBXCommon/HBXAbort.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

constinit const HBXRecordTable HBXVocName::table = recordTable<HBXVocName>("HBXVocName", 0, 0);

HBXVocName& HBXVocName::operator=(const char* text) {
    constexpr const char* kFunction = "HBX::HBXVocName::operator =";
    if (fromString(text != nullptr ? text : "") != 0) {
        abort("HBXFunctionalityCore", "core/src/HBXFunctionalityCore/HBXVoc", __LINE__, kFunction, kFunction);
    }
    return *this;
}

int HBXVocName::fromString(std::string_view text) {
    if (text.size() > kMaxLength || text.find('\0') != std::string_view::npos) {
        return -1;
    }
    text_ = text;
    return 0;
}

HBXVocName HBXVocName::sample(std::uint64_t random) {
    HBXVocName name;
    name.fromString(std::string(random % (kMaxLength + 1), static_cast<char>('a' + random % 26)));
    return name;
}

} // namespace HBX
