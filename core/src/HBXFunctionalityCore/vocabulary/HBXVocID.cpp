#include <HBXFunctionalityCore/vocabulary/HBXVocID.h>

#include <utility>

#include <HBXFunctionalityCore/vocabulary/internal/VocElements.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

using internal::kVocData;
using internal::kVocVersion;

namespace {

constexpr int kName = 1026;

constexpr HBXRow kVocIDRows[] = {
    member<&HBXVocID::name>(kName),
    optional<&HBXVocID::version>(kVocVersion),
};

/// What the vocabulary below the element says of itself; unchanged when it says nothing.
void readOwnVersion(const HBXMessageIterator& it, std::string& version) {
    if (it.seek(kVocData) != 0) {
        return;
    }
    if (it.seek(internal::kVocRoot) == 0) {
        if (internal::seekVocItem(it, internal::kVocParameter, internal::kVocVersionParameter) == 0) {
            it.getValue(version, kVocData);
            it.seekUp();
        }
        it.seekUp();
    }
    it.seekUp();
}

} // namespace

constinit const HBXRecordTable HBXVocID::table = recordTable<HBXVocID>("HBXVocID", 0, 0, kVocIDRows);

int HBXVocID::Reader::operator()(const HBXMessageIterator& it, HBXVocID& value) const {
    HBXVocID read;
    if (it.getObject(read.name, kName) != 0) {
        return -1;
    }
    if (it.seekPresence(kVocVersion) == 0) {
        it.getValue(read.version, kVocVersion);
    } else {
        readOwnVersion(it, read.version);
    }
    value = std::move(read);
    return 0;
}

int HBXVocID::Writer::operator()(HBXMessageIterator& it, const HBXVocID& value) const {
    return it.putValue(value.name.toString(), kName) == 0 ? it.putValue(value.version, kVocVersion) : -1;
}

} // namespace HBX
