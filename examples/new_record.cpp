#include <cstdio>
#include <string>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXMessage/HBXEncoding.h>
#include <HBXMessage/HBXMessage.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

struct HBX_EXPORT HBXBookmark {
    std::string name;
    HBXOptionalProperty<int> position;
    std::vector<std::string> tags;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXBookmark>;
    using Writer = HBXTableWriter<HBXBookmark>;
};

constexpr HBXRow kBookmark[] = {
    member<&HBXBookmark::name>(1026),
    member<&HBXBookmark::position>(3296),
    list<&HBXBookmark::tags>(3011, 1018),
};
constinit const HBXRecordTable HBXBookmark::table =
    recordTable<HBXBookmark>("HBXBookmark", 420, 5146, kBookmark);

} // namespace HBX

/// A record type of one's own travels as those of the library do; one with a member missing is refused.
int main() {
    HBX::HBXBookmark bookmark{"page 7", HBX::HBXOptionalProperty<int>(7), {"blue", "work"}};
    std::string bytes;
    HBX::HBXBookmark back;
    if (HBX::encodeRecord(bookmark, bytes) != 0 || HBX::decodeRecord(bytes, back) != 0 || back != bookmark) {
        return 1;
    }
    std::printf("%s at %d with %zu tags\n", back.name.c_str(), back.position.get(), back.tags.size());

    const auto empty = HBX::adoptMessage(HBX::HBXMsgFactory::createNew());
    const std::unique_ptr<HBX::HBXMessageIterator> it(empty->newIterator());
    std::printf("without a name: %d\n", it->getObject(back, 0));
}
