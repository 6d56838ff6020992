#include "ProtobufWay.h"

#include "environment.pb.h"
#include "environment_unchecked.pb.h"

namespace HBX::bench {
namespace {

template <class Message>
void fill(const Environment& from, Message& to);
template <class Message>
void read(const Message& from, Environment& to);

template <class Message>
void fill(const NameServer& from, Message& to) {
    to.set_address(from.address);
}

template <class Message>
void fill(const Address& from, Message& to) {
    to.set_ip(from.ip);
    to.set_netmask(from.netmask);
}

template <class Message>
void fill(const Disk& from, Message& to) {
    to.set_name(from.name);
    to.set_size(from.size);
}

template <class Message>
void fill(const QoS& from, Message& to) {
    to.set_id(from.id);
    to.set_limit(from.limit);
}

template <class Items, class Messages>
void fillItems(const Items& from, Messages& to) {
    to.Reserve(static_cast<int>(from.size()));
    for (const auto& item : from) {
        fill(item, *to.Add());
    }
}

template <class Message>
void fill(const Environment& from, Message& to) {
    to.set_eid(from.eid);
    to.set_parent_eid(from.parentEid);
    to.set_state(from.state);
    to.set_transition(from.transition);
    to.set_alert_type(from.alertType);
    to.set_version(from.version);
    to.set_cpu_count(from.cpuCount);
    to.set_memory(from.memory);
    to.set_time(from.time);
    to.set_name(from.name);
    to.set_description(from.description);
    to.set_hostname(from.hostname);
    to.set_domain(from.domain);
    to.set_architecture(from.architecture);
    to.set_data(from.data);
    fillItems(from.nameServers, *to.mutable_name_servers());
    fillItems(from.addresses, *to.mutable_addresses());
    fillItems(from.disks, *to.mutable_disks());
    fillItems(from.qoses, *to.mutable_qoses());
}

template <class Message>
void fill(const EnvironmentList& from, Message& to) {
    fillItems(from.environments, *to.mutable_environments());
}

template <class Message>
void read(const Message& from, NameServer& to) {
    to.address = from.address();
}

template <class Message>
void read(const Message& from, Address& to) {
    to.ip = from.ip();
    to.netmask = from.netmask();
}

template <class Message>
void read(const Message& from, Disk& to) {
    to.name = from.name();
    to.size = from.size();
}

template <class Message>
void read(const Message& from, QoS& to) {
    to.id = from.id();
    to.limit = from.limit();
}

template <class Messages, class Items>
void readItems(const Messages& from, Items& to) {
    to.resize(static_cast<std::size_t>(from.size()));
    auto item = to.begin();
    for (const auto& message : from) {
        read(message, *item++);
    }
}

template <class Message>
void read(const Message& from, Environment& to) {
    to.eid = from.eid();
    to.parentEid = from.parent_eid();
    to.state = from.state();
    to.transition = from.transition();
    to.alertType = from.alert_type();
    to.version = from.version();
    to.cpuCount = from.cpu_count();
    to.memory = from.memory();
    to.time = from.time();
    to.name = from.name();
    to.description = from.description();
    to.hostname = from.hostname();
    to.domain = from.domain();
    to.architecture = from.architecture();
    to.data = from.data();
    readItems(from.name_servers(), to.nameServers);
    readItems(from.addresses(), to.addresses);
    readItems(from.disks(), to.disks);
    readItems(from.qoses(), to.qoses);
}

template <class Message>
void read(const Message& from, EnvironmentList& to) {
    readItems(from.environments(), to.environments);
}

template <class Record, class Message>
class ProtobufWay final : public Way<Record> {
public:
    std::size_t roundTrip(const Record& in, Record& out) override {
        written_.Clear();
        fill(in, written_);
        if (!written_.SerializeToString(&bytes_) || !parsed_.ParseFromString(bytes_)) {
            return 0;
        }
        read(parsed_, out);
        return bytes_.size();
    }

private:
    Message written_, parsed_;
    std::string bytes_;
};

class ProtobufClassWay final : public Way<Environment> {
public:
    std::size_t roundTrip(const Environment& in, Environment&) override {
        if (from_ != &in) {
            from_ = &in;
            written_.Clear();
            fill(in, written_);
        }
        return written_.SerializeToString(&bytes_) && parsed_.ParseFromString(bytes_) ? bytes_.size() : 0;
    }

    bool works(const Environment& in) override {
        Environment out;
        const bool good = roundTrip(in, out) != 0;
        read(parsed_, out);
        return good && in == out;
    }

private:
    const Environment* from_ = nullptr;
    proto::Environment written_, parsed_;
    std::string bytes_;
};

} // namespace

template <>
std::unique_ptr<Way<Environment>> makeProtobuf<Environment>() {
    return std::make_unique<ProtobufWay<Environment, proto::Environment>>();
}

template <>
std::unique_ptr<Way<EnvironmentList>> makeProtobuf<EnvironmentList>() {
    return std::make_unique<ProtobufWay<EnvironmentList, proto::EnvironmentList>>();
}

std::unique_ptr<Way<Environment>> makeProtobufUnchecked() {
    return std::make_unique<ProtobufWay<Environment, unchecked::Environment>>();
}

std::unique_ptr<Way<Environment>> makeProtobufClass() { return std::make_unique<ProtobufClassWay>(); }

} // namespace HBX::bench
