#include "PugixmlWay.h"

#include <pugixml.hpp>

#include "StringWriter.h"

namespace HBX::bench {
namespace {

void put(pugi::xml_node parent, const char* name, const std::string& value) {
    parent.append_child(name).text().set(value.c_str());
}

void put(pugi::xml_node parent, const char* name, std::int64_t value) {
    parent.append_child(name).text().set(static_cast<long long>(value));
}

void fill(const NameServer& from, pugi::xml_node to) { put(to, "value", from.address); }

void fill(const Address& from, pugi::xml_node to) {
    put(to, "ip_address", from.ip);
    put(to, "netmask", from.netmask);
}

void fill(const Disk& from, pugi::xml_node to) {
    put(to, "name", from.name);
    put(to, "size", from.size);
}

void fill(const QoS& from, pugi::xml_node to) {
    put(to, "id", from.id);
    put(to, "limit", from.limit);
}

template <class Items>
void fillItems(const Items& from, pugi::xml_node list, const char* name) {
    for (const auto& item : from) {
        fill(item, list.append_child(name));
    }
}

void fill(const Environment& from, pugi::xml_node to) {
    put(to, "eid", from.eid);
    put(to, "parent_eid", from.parentEid);
    put(to, "state", from.state);
    put(to, "transition", from.transition);
    put(to, "alert_type", from.alertType);
    put(to, "version", from.version);
    put(to, "cpu_count", from.cpuCount);
    put(to, "memory", from.memory);
    put(to, "time", from.time);
    put(to, "name", from.name);
    put(to, "description", from.description);
    put(to, "host_name", from.hostname);
    put(to, "domain", from.domain);
    put(to, "architecture", from.architecture);
    put(to, "data", from.data);
    fillItems(from.nameServers, to.append_child("name_servers"), "entry");
    fillItems(from.addresses, to.append_child("address"), "entry");
    fillItems(from.disks, to.append_child("disks"), "disk");
    fillItems(from.qoses, to.append_child("qos"), "entry");
}

const char* get(pugi::xml_node parent, const char* name) { return parent.child(name).text().get(); }

std::int64_t getNumber(pugi::xml_node parent, const char* name) {
    return parent.child(name).text().as_llong();
}

int getInt(pugi::xml_node parent, const char* name) { return parent.child(name).text().as_int(); }

void read(pugi::xml_node from, NameServer& to) { to.address = get(from, "value"); }

void read(pugi::xml_node from, Address& to) {
    to.ip = get(from, "ip_address");
    to.netmask = get(from, "netmask");
}

void read(pugi::xml_node from, Disk& to) {
    to.name = get(from, "name");
    to.size = getNumber(from, "size");
}

void read(pugi::xml_node from, QoS& to) {
    to.id = get(from, "id");
    to.limit = getNumber(from, "limit");
}

template <class Items>
void readItems(pugi::xml_node list, Items& to) {
    for (const pugi::xml_node item : list.children()) {
        read(item, to.emplace_back());
    }
}

bool read(pugi::xml_node from, Environment& to) {
    to.eid = get(from, "eid");
    to.parentEid = get(from, "parent_eid");
    to.state = getInt(from, "state");
    to.transition = getInt(from, "transition");
    to.alertType = getInt(from, "alert_type");
    to.version = getInt(from, "version");
    to.cpuCount = getInt(from, "cpu_count");
    to.memory = getNumber(from, "memory");
    to.time = getNumber(from, "time");
    to.name = get(from, "name");
    to.description = get(from, "description");
    to.hostname = get(from, "host_name");
    to.domain = get(from, "domain");
    to.architecture = get(from, "architecture");
    readItems(from.child("name_servers"), to.nameServers);
    readItems(from.child("address"), to.addresses);
    readItems(from.child("disks"), to.disks);
    readItems(from.child("qos"), to.qoses);
    to.data = get(from, "data");
    return true;
}

class PugixmlWay final : public Way<Environment> {
public:
    std::size_t roundTrip(const Environment& in, Environment& out) override {
        written_.reset();
        fill(in, written_.append_child("environment"));
        text_.clear();
        written_.save(text_, "", pugi::format_raw | pugi::format_no_declaration);
        if (!parsed_.load_buffer(text_.view().data(), text_.view().size())) {
            return 0;
        }
        return read(parsed_.first_child(), out) ? text_.view().size() : 0;
    }

private:
    pugi::xml_document written_, parsed_;
    StringWriter text_;
};

} // namespace

std::unique_ptr<Way<Environment>> makePugixml() { return std::make_unique<PugixmlWay>(); }

} // namespace HBX::bench
