#include <HBXFunctionalityCore/environment/HBXEnvConfig.h>

#include <cstdlib>
#include <memory>
#include <utility>

#include <HBXMessage/HBXEncoding.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX {
namespace {

constexpr int kName = 1026;
constexpr int kDescription = 1496;
constexpr int kDomain = 1374;
constexpr int kHostname = 1261;
constexpr int kArchitecture = 1276;
constexpr int kNameservers = 1281;
constexpr int kSearchDomains = 1558;
constexpr int kChildTypes = 2153;
constexpr int kText = 1018; // an item of these three
constexpr int kAddresses = 1687;
constexpr int kAddress = 1008;
constexpr int kOS = 1277;
constexpr int kBaseSampleId = 1895;
constexpr int kBaseSnapshotId = 1896;
constexpr int kCustomized = 1766;
constexpr int kAgentVersion = 1223;

constexpr int kPresentAgentVersion = 40500;
constexpr int kUnknownAgentVersion = 40000; // of agents that did not write it yet

/// The members as plain values, for everything that looks at records without knowing them.
struct Members {
    HBXOptionalProperty<std::string> name, description, domain, hostname, architecture;
    std::vector<std::string> nameservers, searchDomains, childTypes;
    std::vector<HBXIPAddress> addresses;
    HBXOptionalProperty<HBXOS> os;
    HBXOptionalProperty<HBXGUID> baseSampleId, baseSnapshotId;
    HBXOptionalProperty<bool> customized;
    HBXOptionalProperty<int> agentVersion;

    Members() = default;
    explicit Members(const HBXEnvConfig& config) {
        if (const auto it = config.getMessageIterator()) {
            it->getObject(*this, 0);
        }
    }
    void storeTo(HBXEnvConfig& config) const {
        config.reset(true);
        config.initMsg();
        const auto it = config.getMessageIterator();
        it->deleteChild(kAgentVersion);
        it->putObject(*this, 0);
    }

    static const HBXRecordTable table;
    using Reader = HBXTableReader<Members>;
    using Writer = HBXTableWriter<Members>;
};

constexpr HBXRow kMembers[] = {
    member<&Members::name>(kName),
    memberAs<&Members::description>(HBXKind::Base64, kDescription),
    member<&Members::domain>(kDomain),
    member<&Members::hostname>(kHostname),
    member<&Members::architecture>(kArchitecture),
    list<&Members::nameservers>(kNameservers, kText),
    list<&Members::searchDomains>(kSearchDomains, kText),
    list<&Members::childTypes>(kChildTypes, kText),
    list<&Members::addresses>(kAddresses, kAddress),
    member<&Members::os>(kOS),
    member<&Members::baseSampleId>(kBaseSampleId),
    member<&Members::baseSnapshotId>(kBaseSnapshotId),
    member<&Members::customized>(kCustomized),
    member<&Members::agentVersion>(kAgentVersion),
};

constinit const HBXRecordTable Members::table = recordTable<Members>("HBXEnvConfig members", 0, 0, kMembers);

struct TextReader {
    int operator()(const HBXMessageIterator& it, std::string& text) const { return it.getValue(text, 0); }
};
struct TextWriter : HBXPlainMarks {
    int operator()(HBXMessageIterator& it, const std::string& text) const { return it.putValue(text, 0); }
};

template <class Item, class Reader>
int readList(const HBXMessageIterator& it, int id, int itemId, Reader reader,
             HBXOptionalProperty<std::vector<Item>>& property) {
    std::vector<Item> items;
    const HBXReaderListT list(HBXReaderListDataT<Reader>(reader), itemId, 0);
    if (HBXReaderIDT(list, id, 1)(it, items) != 0) {
        return -1;
    }
    property = std::move(items);
    return 0;
}

template <class Item, class Writer>
int writeList(HBXMessageIterator& it, int id, int itemId, Writer writer,
              const HBXOptionalProperty<std::vector<Item>>& property) {
    const HBXWriterListT list{HBXWriterIDT(writer, itemId)};
    return property.isSet() ? HBXWriterIDT(list, id)(it, property.get()) : 0;
}

using Texts = HBXOptionalProperty<std::vector<std::string>>;

/// What a call gets that lists of texts have in common.
auto readTexts(Texts& texts, int id) {
    return
        [&texts, id](const HBXMessageIterator& it) { return readList(it, id, kText, TextReader(), texts); };
}
auto writeTexts(const Texts& texts, int id) {
    return [&texts, id](HBXMessageIterator& it) { return writeList(it, id, kText, TextWriter(), texts); };
}

/// A reading as decoding in place takes it.
using Reading = std::function<int(const HBXMessageIterator&)>;

HBXReadCall callOf(const Reading& reading) {
    return {[](const HBXMessageIterator& it, void* raw) { return (*static_cast<const Reading*>(raw))(it); },
            const_cast<Reading*>(&reading)};
}

boost::intrusive_ptr<HBXMessage> parse(std::string_view bytes) {
    return adoptMessage(HBXMsgFactory::createNew(bytes.data(), static_cast<int>(bytes.size())));
}

std::string emptyMessage() {
    std::string bytes;
    encodeMessage({[](HBXMessageIterator&, const void*) { return 0; }, nullptr}, bytes);
    return bytes;
}

} // namespace

constinit const HBXRecordTable HBXEnvConfig::table =
    viewTable<HBXEnvConfig, Members>("HBXEnvConfig", 408, 5075, kMembers);

HBXEnvConfig::HBXEnvConfig(boost::shared_ptr<const HBXEnvCoreBasic> core, EnvConfigType kind)
    : kind_(kind), core_(std::move(core)) {
    if (core_) {
        type_ = core_->type;
    }
}

HBXEnvConfig::HBXEnvConfig(const HBXEnvConfig& other)
    : message_(other.message_ ? adoptMessage(other.message_->copy(true)) : nullptr),
      kind_(other.kind_),
      core_(other.core_),
      type_(other.type_) {}

HBXEnvConfig& HBXEnvConfig::operator=(const HBXEnvConfig& other) {
    return *this = HBXEnvConfig(other); // NOLINT(misc-unconventional-assign-operator): by moving
}

HBXEnvConfig::~HBXEnvConfig() = default;

// --- the message ---

std::string_view HBXEnvConfig::coreBytes() const {
    if (!core_) {
        return {};
    }
    return kind_ == ENV_CONFIG ? core_->configBytes() : core_->virtualConfigBytes();
}

int HBXEnvConfig::initMsg() {
    if (message_) {
        return 0;
    }
    if (const std::string_view bytes = coreBytes(); !bytes.empty()) {
        message_ = parse(bytes);
        return message_ ? 0 : -1;
    }
    message_ = adoptMessage(HBXMsgFactory::createNew());
    return kind_ == ENV_CONFIG ? write([](HBXMessageIterator& it) {
        return it.putValue(kPresentAgentVersion, kAgentVersion);
    })
                               : 0;
}

boost::shared_ptr<HBXMessageIterator> HBXEnvConfig::getMessageIterator() {
    return hasMessage() && initMsg() == 0 ? boost::shared_ptr<HBXMessageIterator>(message_->newIterator())
                                          : nullptr;
}

boost::shared_ptr<const HBXMessageIterator> HBXEnvConfig::getMessageIterator() const {
    const boost::intrusive_ptr<const HBXMessage> message =
        message_ || coreBytes().empty() ? message_ : parse(coreBytes());
    return message ? boost::shared_ptr<const HBXMessageIterator>(message->newIterator()) : nullptr;
}

int HBXEnvConfig::getBytes(std::string& bytes) const {
    if (!message_) {
        bytes = coreBytes();
        return 0;
    }
    char* data = nullptr;
    int length = 0;
    if (message_->serialize(&data, &length, nullptr, 0) != 0) {
        return -1;
    }
    bytes.assign(data, static_cast<std::size_t>(length));
    std::free(data);
    return 0;
}

int HBXEnvConfig::read(const std::function<int(const HBXMessageIterator&)>& reading) const {
    if (message_) {
        const std::unique_ptr<const HBXMessageIterator> it(std::as_const(*message_).newIterator());
        return reading(*it);
    }
    return decodeTrustedMessage(coreBytes(), callOf(reading));
}

int HBXEnvConfig::write(const std::function<int(HBXMessageIterator&)>& writing) {
    if (initMsg() != 0) {
        return -1;
    }
    const std::unique_ptr<HBXMessageIterator> it(message_->newIterator());
    return writing(*it);
}

int HBXEnvConfig::replace(int id, const std::function<int(HBXMessageIterator&)>& writing) {
    return write([&](HBXMessageIterator& it) {
        it.deleteChild(id);
        return writing(it);
    });
}

int HBXEnvConfig::compare(const HBXEnvConfig& other) const {
    const auto bytesOf = [](const HBXEnvConfig& config) {
        std::string bytes;
        config.getBytes(bytes);
        return bytes.empty() ? emptyMessage() : bytes;
    };
    return bytesOf(*this).compare(bytesOf(other));
}

void HBXEnvConfig::reset(bool forgetCore) {
    message_.reset();
    if (forgetCore) {
        core_.reset();
    }
}

int HBXEnvConfig::getPositionOfTheTag(const std::string& name) const {
    int position = -1;
    const int result = read([&](const HBXMessageIterator& it) {
        const int wanted = it.idOfName(name);
        int moved = it.firstChild();
        for (position = 0; moved == 0 && it.curID() != wanted; ++position) {
            moved = it.nextSibling();
        }
        return moved;
    });
    return result == 0 ? position : -1;
}

int HBXEnvConfig::Reader::operator()(const HBXMessageIterator& it, HBXEnvConfig& config) const {
    auto message = adoptMessage(it.copyMessage());
    if (!message) {
        return -1;
    }
    config.reset(true);
    config.message_ = std::move(message);
    return 0;
}

int HBXEnvConfig::Writer::operator()(HBXMessageIterator& it, const HBXEnvConfig& config) const {
    if (!config.hasMessage()) {
        return 0;
    }
    const auto from = config.getMessageIterator();
    return from ? it.copyToChild(from.get()) : -1;
}

// --- the members ---

int HBXEnvConfig::getStringAttr(HBXOptionalProperty<std::string>& property, int id) const {
    return read([&](const HBXMessageIterator& it) {
        std::string text;
        if (it.getValue(text, id) != 0) {
            return -1;
        }
        property = std::move(text);
        return 0;
    });
}

int HBXEnvConfig::setStringAttr(const HBXOptionalProperty<std::string>& property, int id) {
    return replace(
        id, [&](HBXMessageIterator& it) { return property.isSet() ? it.putValue(property.get(), id) : 0; });
}

int HBXEnvConfig::getStringBase64Attr(HBXOptionalProperty<std::string>& property, int id) const {
    return read([&](const HBXMessageIterator& it) {
        std::string text;
        if (it.getValueBase64(text, id) != 0) {
            return -1;
        }
        property = std::move(text);
        return 0;
    });
}

int HBXEnvConfig::setStringBase64Attr(const HBXOptionalProperty<std::string>& property, int id) {
    return replace(id, [&](HBXMessageIterator& it) {
        return property.isSet() ? it.putValueBase64(property.get(), id) : 0;
    });
}

int HBXEnvConfig::getName(HBXOptionalProperty<std::string>& value) const {
    return getStringAttr(value, kName);
}
int HBXEnvConfig::setName(const HBXOptionalProperty<std::string>& value) {
    return setStringAttr(value, kName);
}
int HBXEnvConfig::getDescription(HBXOptionalProperty<std::string>& value) const {
    return getStringBase64Attr(value, kDescription);
}
int HBXEnvConfig::setDescription(const HBXOptionalProperty<std::string>& value) {
    return setStringBase64Attr(value, kDescription);
}
int HBXEnvConfig::getDomain(HBXOptionalProperty<std::string>& value) const {
    return getStringAttr(value, kDomain);
}
int HBXEnvConfig::setDomain(const HBXOptionalProperty<std::string>& value) {
    return setStringAttr(value, kDomain);
}
int HBXEnvConfig::getHostname(HBXOptionalProperty<std::string>& value) const {
    return getStringAttr(value, kHostname);
}
int HBXEnvConfig::setHostname(const HBXOptionalProperty<std::string>& value) {
    return setStringAttr(value, kHostname);
}
int HBXEnvConfig::getArchitecture(HBXOptionalProperty<std::string>& value) const {
    return getStringAttr(value, kArchitecture);
}
int HBXEnvConfig::setArchitecture(const HBXOptionalProperty<std::string>& value) {
    return setStringAttr(value, kArchitecture);
}
int HBXEnvConfig::getNameservers(HBXOptionalProperty<std::vector<std::string>>& value) const {
    return read(readTexts(value, kNameservers));
}
int HBXEnvConfig::setNameservers(const HBXOptionalProperty<std::vector<std::string>>& value) {
    return replace(kNameservers, writeTexts(value, kNameservers));
}
int HBXEnvConfig::getSearchDomains(HBXOptionalProperty<std::vector<std::string>>& value) const {
    return read(readTexts(value, kSearchDomains));
}
int HBXEnvConfig::setSearchDomains(const HBXOptionalProperty<std::vector<std::string>>& value) {
    return replace(kSearchDomains, writeTexts(value, kSearchDomains));
}
int HBXEnvConfig::getChildTypes(HBXOptionalProperty<std::vector<std::string>>& value) const {
    return read(readTexts(value, kChildTypes));
}
int HBXEnvConfig::setChildTypes(const HBXOptionalProperty<std::vector<std::string>>& value) {
    return replace(kChildTypes, writeTexts(value, kChildTypes));
}

int HBXEnvConfig::getAddresses(HBXOptionalProperty<std::vector<HBXIPAddress>>& value) const {
    return read([&](const HBXMessageIterator& it) {
        return readList(it, kAddresses, kAddress, HBXIPAddress::Reader(), value);
    });
}
int HBXEnvConfig::setAddresses(const HBXOptionalProperty<std::vector<HBXIPAddress>>& value) {
    return replace(kAddresses, [&](HBXMessageIterator& it) {
        return writeList(it, kAddresses, kAddress, HBXIPAddress::Writer(), value);
    });
}

int HBXEnvConfig::getOS(HBXOS& value) const {
    HBXOS fresh;
    const int result = read([&](const HBXMessageIterator& it) { return it.getObject(fresh, kOS); });
    if (result == 0) {
        value = std::move(fresh);
    }
    return result;
}
int HBXEnvConfig::setOS(const HBXOS& value) {
    return replace(kOS, [&](HBXMessageIterator& it) { return it.putObject(value, kOS); });
}

int HBXEnvConfig::getBaseSampleId(HBXOptionalProperty<HBXGUID>& value) const {
    HBXGUID id;
    const int result = read([&](const HBXMessageIterator& it) { return it.getObject(id, kBaseSampleId); });
    if (result == 0) {
        value = id;
    }
    return result;
}
int HBXEnvConfig::setBaseSampleId(const HBXOptionalProperty<HBXGUID>& value) {
    return replace(kBaseSampleId, [&](HBXMessageIterator& it) {
        return value.isSet() ? it.putObject(value.get(), kBaseSampleId) : 0;
    });
}

int HBXEnvConfig::getBaseSnapshotId(HBXGUID& value) const {
    return read([&](const HBXMessageIterator& it) { return it.getObject(value, kBaseSnapshotId); });
}
int HBXEnvConfig::setBaseSnapshotId(const HBXGUID& value) {
    return replace(kBaseSnapshotId,
                   [&](HBXMessageIterator& it) { return it.putObject(value, kBaseSnapshotId); });
}

int HBXEnvConfig::getConfigCustomized(bool& value) const {
    return read([&](const HBXMessageIterator& it) { return it.getValue(value, kCustomized) == 0 ? 0 : -1; });
}

int HBXEnvConfig::getAgentVersion() const {
    int version = -1;
    if (kind_ == ENV_CONFIG) {
        read([&](const HBXMessageIterator& it) {
            version = kUnknownAgentVersion;
            return it.getValue(version, kAgentVersion);
        });
    }
    return version;
}

} // namespace HBX
