#include <HBXFunctionalityCore/vocabulary/HBXVocPrototype.h>

#include <memory>
#include <utility>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXFunctionalityCore/vocabulary/HBXVocLocalPrototype.h>
#include <HBXFunctionalityCore/vocabulary/internal/VocElements.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

using internal::kVocData;

using Iterator = std::unique_ptr<HBXVocIterator>;

struct HBXVocPrototype::Rows {
    static constexpr HBXRow kRows[] = {valueOnly<&HBXVocPrototype::content_>(kVocData)};
};

constinit const HBXRecordTable HBXVocPrototype::table =
    recordTable<HBXVocPrototype>("HBXVocPrototype", 404, 5045, Rows::kRows);

namespace {

HBXVocIterator* atRoot(Iterator it) { return it && it->seekRoot() == 0 ? it.release() : nullptr; }

HBXVocIterator* atParameter(Iterator it, const std::string& id) {
    return it && it->seekParameter(id) == 0 ? it.release() : nullptr;
}

} // namespace

HBXVocPrototype::HBXVocPrototype(HBXMessage* message) : content_(adoptMessage(message)) {}

HBXVocPrototype::HBXVocPrototype(const HBXVocPrototype& other) noexcept
    : intrusive_ref_counter(other), content_(other.message()) {}

HBXVocPrototype& HBXVocPrototype::operator=(const HBXVocPrototype& other) noexcept {
    if (this != &other) {
        reset(other.message().detach());
    }
    return *this;
}

boost::intrusive_ptr<HBXVocPrototype> HBXVocPrototype::getVoc() {
    static const boost::intrusive_ptr<HBXVocPrototype> voc = [] {
        boost::intrusive_ptr<HBXVocPrototype> local(new HBXVocLocalPrototype());
        delete local->read();
        return local;
    }();
    return voc;
}

boost::intrusive_ptr<HBXMessage> HBXVocPrototype::message() const {
    const HBXLockGuard guard(lock_);
    return content_.message();
}

void HBXVocPrototype::reset(HBXMessage* message) {
    HBXVocContent content(adoptMessage(message));
    const HBXLockGuard guard(lock_);
    std::swap(content_, content); // the old message is freed after the lock
    version_.clear();
}

HBXVocIterator* HBXVocPrototype::newIterator() const {
    const boost::intrusive_ptr<HBXMessage> present = message();
    return present ? new HBXVocIterator(internal::binaryOf(*present)) : nullptr;
}

HBXVocIterator* HBXVocPrototype::newIteratorWithInit() { return newIterator(); }

int HBXVocPrototype::readFromFile(const std::string& path) {
    auto message = adoptMessage(HBXMsgFactory::createNew());
    if (message->fromTextFile(path) != 0) {
        return -1;
    }
    reset(message.detach());
    return 0;
}

int HBXVocPrototype::saveToFile(const std::string& path) const {
    const boost::intrusive_ptr<HBXMessage> present = message();
    if (!present) {
        setErrorMessage(path + ": there is no vocabulary to save");
        return -1;
    }
    return present->toTextFile(path);
}

HBXVocIterator* HBXVocPrototype::read() { return atRoot(Iterator(newIteratorWithInit())); }

HBXVocIterator* HBXVocPrototype::read() const { return atRoot(Iterator(newIterator())); }

HBXVocIterator* HBXVocPrototype::readParameter(const std::string& id) {
    return atParameter(Iterator(newIteratorWithInit()), id);
}

HBXVocIterator* HBXVocPrototype::readParameter(const std::string& id) const {
    return atParameter(Iterator(newIterator()), id);
}

HBXVocIterator* HBXVocPrototype::readCategory(const std::string& tag) {
    return readCategory(std::set<std::string>{tag});
}

HBXVocIterator* HBXVocPrototype::readCategory(const std::string& tag) const {
    return readCategory(std::set<std::string>{tag});
}

HBXVocIterator* HBXVocPrototype::readCategory(const std::set<std::string>& tags) {
    return restricted(read(), tags);
}

HBXVocIterator* HBXVocPrototype::readCategory(const std::set<std::string>& tags) const {
    return restricted(read(), tags);
}

HBXVocIterator* HBXVocPrototype::restricted(HBXVocIterator* it, const std::set<std::string>& tags) {
    if (it != nullptr) {
        it->setRestrictSet(tags);
    }
    return it;
}

bool HBXVocPrototype::isFeatureEnabled(const std::string& id) {
    return Iterator(readParameter(id)) != nullptr;
}

std::string HBXVocPrototype::readVersion() {
    {
        const HBXLockGuard guard(lock_);
        if (!version_.empty()) {
            return version_;
        }
    }
    std::string version;
    const Iterator it(readParameter(internal::kVocVersionParameter));
    if (it && it->getValue(version, kVocData) == 0) {
        const HBXLockGuard guard(lock_);
        if (content_.message() == it->getMessage()) { // else it was replaced in the meantime
            version_ = version;
        }
    }
    return version;
}

int HBXVocPrototype::Reader::operator()(const HBXMessageIterator& it, HBXVocPrototype& value) const {
    boost::intrusive_ptr<HBXMessage> message = adoptMessage(it.copyMessage());
    if (!message || std::unique_ptr<HBXMessageIterator>(message->newIterator())->firstChild() != 0) {
        return -1;
    }
    value.reset(message.detach());
    return 0;
}

int HBXVocPrototype::Writer::operator()(HBXMessageIterator& it, const HBXVocPrototype& value) const {
    const Iterator from(value.newIterator());
    return from && from->seek(kVocData) == 0 ? it.copyToChild(from.get()) : -1;
}

} // namespace HBX
