#include "CapnProtoWay.h"

#include <capnp/message.h>
#include <capnp/serialize.h>

#include "environment.capnp.h"

namespace HBX::bench {
namespace {

capnp::Text::Reader text(const std::string& value) { return {value.data(), value.size()}; }

std::string text(capnp::Text::Reader value) { return {value.begin(), value.size()}; }

capnp::Data::Reader data(const std::string& value) {
    return {reinterpret_cast<const kj::byte*>(value.data()), value.size()};
}

std::string data(capnp::Data::Reader value) {
    return {reinterpret_cast<const char*>(value.begin()), value.size()};
}

unsigned count(std::size_t size) { return static_cast<unsigned>(size); }

void fillLists(const Environment& from, capnproto::Environment::Builder to) {
    auto nameServers = to.initNameServers(count(from.nameServers.size()));
    for (unsigned i = 0; i < nameServers.size(); ++i) {
        nameServers[i].setAddress(text(from.nameServers[i].address));
    }
    auto addresses = to.initAddresses(count(from.addresses.size()));
    for (unsigned i = 0; i < addresses.size(); ++i) {
        addresses[i].setIp(text(from.addresses[i].ip));
        addresses[i].setNetmask(text(from.addresses[i].netmask));
    }
    auto disks = to.initDisks(count(from.disks.size()));
    for (unsigned i = 0; i < disks.size(); ++i) {
        disks[i].setName(text(from.disks[i].name));
        disks[i].setSize(from.disks[i].size);
    }
    auto qoses = to.initQoses(count(from.qoses.size()));
    for (unsigned i = 0; i < qoses.size(); ++i) {
        qoses[i].setId(text(from.qoses[i].id));
        qoses[i].setLimit(from.qoses[i].limit);
    }
}

void fill(const Environment& from, capnproto::Environment::Builder to) {
    to.setEid(text(from.eid));
    to.setParentEid(text(from.parentEid));
    to.setState(from.state);
    to.setTransition(from.transition);
    to.setAlertType(from.alertType);
    to.setVersion(from.version);
    to.setCpuCount(from.cpuCount);
    to.setMemory(from.memory);
    to.setTime(from.time);
    to.setName(text(from.name));
    to.setDescription(text(from.description));
    to.setHostname(text(from.hostname));
    to.setDomain(text(from.domain));
    to.setArchitecture(text(from.architecture));
    to.setData(data(from.data));
    fillLists(from, to);
}

void readLists(capnproto::Environment::Reader from, Environment& to) {
    to.nameServers.reserve(from.getNameServers().size());
    for (const auto item : from.getNameServers()) {
        to.nameServers.push_back({text(item.getAddress())});
    }
    to.addresses.reserve(from.getAddresses().size());
    for (const auto item : from.getAddresses()) {
        to.addresses.push_back({text(item.getIp()), text(item.getNetmask())});
    }
    to.disks.reserve(from.getDisks().size());
    for (const auto item : from.getDisks()) {
        to.disks.push_back({text(item.getName()), item.getSize()});
    }
    to.qoses.reserve(from.getQoses().size());
    for (const auto item : from.getQoses()) {
        to.qoses.push_back({text(item.getId()), item.getLimit()});
    }
}

void read(capnproto::Environment::Reader from, Environment& to) {
    to.eid = text(from.getEid());
    to.parentEid = text(from.getParentEid());
    to.state = from.getState();
    to.transition = from.getTransition();
    to.alertType = from.getAlertType();
    to.version = from.getVersion();
    to.cpuCount = from.getCpuCount();
    to.memory = from.getMemory();
    to.time = from.getTime();
    to.name = text(from.getName());
    to.description = text(from.getDescription());
    to.hostname = text(from.getHostname());
    to.domain = text(from.getDomain());
    to.architecture = text(from.getArchitecture());
    to.data = data(from.getData());
    readLists(from, to);
}

class CapnProtoWay final : public Way<Environment> {
public:
    std::size_t roundTrip(const Environment& in, Environment& out) override {
        capnp::MallocMessageBuilder builder;
        fill(in, builder.initRoot<capnproto::Environment>());
        const kj::Array<capnp::word> words = capnp::messageToFlatArray(builder);
        capnp::FlatArrayMessageReader reader(words);
        read(reader.getRoot<capnproto::Environment>(), out);
        return words.asBytes().size();
    }
};

} // namespace

std::unique_ptr<Way<Environment>> makeCapnProto() { return std::make_unique<CapnProtoWay>(); }

} // namespace HBX::bench
