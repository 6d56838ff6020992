#include <cstdint>
#include <cstdlib>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <boost/smart_ptr/shared_ptr.hpp>

#include <HBXMessage/HBXDerivedParsers.h>
#include <HBXMessage/HBXEncoding.h>
#include <HBXMessage/HBXMessage.h>
#include <HBXMessage/HBXRecordTable.h>

#include "FitHeader.h"

/// Bytes as a record: read in place and through a tree they give the same result and the same value, and what
/// was read writes the same bytes through a tree and straight.
namespace HBX {

struct FuzzShape {
    virtual ~FuzzShape() = default;
    int size = 0;

    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<FuzzShape>;
    using Writer = HBXTableWriter<FuzzShape>;
};

struct FuzzGroup : FuzzShape {
    std::vector<boost::shared_ptr<FuzzShape>> members;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<FuzzGroup>;
    using Writer = HBXTableWriter<FuzzGroup>;
};

struct FuzzRecord {
    std::string text;
    HBXOptionalProperty<int> number;
    HBXOptionalProperty<std::string> bytes;
    double real = 0;
    bool flag = false;
    std::vector<std::int64_t> numbers;
    std::set<std::string> words;
    boost::shared_ptr<FuzzShape> shape;
    std::vector<FuzzRecord> nested;
    std::vector<FuzzRecord> bare;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<FuzzRecord>;
    using Writer = HBXTableWriter<FuzzRecord>;
};

namespace {

constexpr HBXRow kShape[] = {member<&FuzzShape::size>(1)};
constexpr HBXRow kGroup[] = {list<&FuzzGroup::members>(2, 3)};
constexpr HBXRow kRecord[] = {
    optional<&FuzzRecord::text>(1),
    member<&FuzzRecord::number>(2),
    memberAs<&FuzzRecord::bytes>(HBXKind::Base64, 3),
    optional<&FuzzRecord::real>(4),
    optional<&FuzzRecord::flag>(5),
    list<&FuzzRecord::numbers>(6, 1),
    list<&FuzzRecord::words>(7, 1),
    polymorphic<&FuzzRecord::shape>(8),
    list<&FuzzRecord::nested>(9, 1),
    list<&FuzzRecord::bare>(0, 10),
};

const HBXDerivedParserFactoryT<FuzzShape, FuzzShape> kShapeEntry(true);
const HBXDerivedParserFactoryT<FuzzGroup, FuzzShape> kGroupEntry(false);

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

void checkWriting(const FuzzRecord& record) {
    const auto message = adoptMessage(HBXMsgFactory::createNew());
    const std::unique_ptr<HBXMessageIterator> it(message->newIterator());
    require(it->putObject(record, 0) == 0);
    char* data = nullptr;
    int length = 0;
    const int written = it->serialize(&data, &length, 0);
    const std::unique_ptr<char, decltype(&std::free)> owner(data, &std::free);
    std::string straight;
    require(encodeRecord(record, straight) == written);
    if (written == 0) {
        require(straight == std::string_view(data, static_cast<std::size_t>(length)));
        FuzzRecord again;
        require(decodeTrustedRecord(straight, again) == 0 && again == record);
    }
}

void check(std::string_view bytes) {
    FuzzRecord trusted;
    decodeTrustedRecord(bytes, trusted);
    FuzzRecord inPlace;
    const int result = decodeRecord(bytes, inPlace);
    const auto message = adoptMessage(HBXMsgFactory::createNew(bytes.data(), static_cast<int>(bytes.size())));
    if (message == nullptr) {
        require(result == -1 && inPlace == FuzzRecord());
        return;
    }
    const std::unique_ptr<HBXMessageIterator> it(message->newIterator());
    FuzzRecord throughTree;
    require(it->getObject(throughTree, 0) == result);
    require(throughTree == inPlace && throughTree == trusted);
    checkWriting(throughTree);
}

} // namespace

constinit const HBXRecordTable FuzzShape::table = recordTable<FuzzShape>("FuzzShape", 292, 5009, kShape);
constinit const HBXPointerType FuzzShape::family = familyType<FuzzShape>();
constinit const HBXRecordTable FuzzGroup::table =
    recordTable<FuzzGroup, FuzzShape>("FuzzGroup", 283, 5010, kGroup);
constinit const HBXRecordTable FuzzRecord::table = recordTable<FuzzRecord>("FuzzRecord", 0, 0, kRecord);

} // namespace HBX

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    HBX::check(bytes);
    HBX::check(fitHeader(bytes));
    return 0;
}
