#include "HandWritten.h"

namespace HBX::bench {
namespace {

bool good(int result) { return result == 0; }

struct NameServerWriter : HBXPlainMarks {
    int operator()(HBXMessageIterator& it, const NameServer& value) const {
        return it.putValue(value.address, kValue);
    }
};

struct AddressWriter : HBXPlainMarks {
    int operator()(HBXMessageIterator& it, const Address& value) const {
        return good(it.putValue(value.ip, kIpAddress)) && good(it.putValue(value.netmask, kNetmask)) ? 0 : -1;
    }
};

struct DiskWriter : HBXPlainMarks {
    int operator()(HBXMessageIterator& it, const Disk& value) const {
        return good(it.putValue(value.name, kName)) && good(it.putValueLongLong(value.size, kSize)) ? 0 : -1;
    }
};

struct QoSWriter : HBXPlainMarks {
    int operator()(HBXMessageIterator& it, const QoS& value) const {
        return good(it.putValue(value.id, kId)) && good(it.putValueLongLong(value.limit, kLimit)) ? 0 : -1;
    }
};

struct NameServerReader {
    int operator()(const HBXMessageIterator& it, NameServer& value) const {
        return good(it.getValue(value.address, kValue)) ? 0 : -1;
    }
};

struct AddressReader {
    int operator()(const HBXMessageIterator& it, Address& value) const {
        return good(it.getValue(value.ip, kIpAddress)) && good(it.getValue(value.netmask, kNetmask)) ? 0 : -1;
    }
};

struct DiskReader {
    int operator()(const HBXMessageIterator& it, Disk& value) const {
        return good(it.getValue(value.name, kName)) && good(it.getValueLongLong(value.size, kSize)) ? 0 : -1;
    }
};

struct QoSReader {
    int operator()(const HBXMessageIterator& it, QoS& value) const {
        return good(it.getValue(value.id, kId)) && good(it.getValueLongLong(value.limit, kLimit)) ? 0 : -1;
    }
};

template <class ItemWriter, class Items>
int putList(HBXMessageIterator& it, const Items& items, int id, int itemId) {
    using Item = HBXWriterIDT<int, ItemWriter>;
    using List = HBXWriterListT<Item>;
    return HBXWriterIDT<int, List>(List(Item(ItemWriter(), itemId)), id)(it, items);
}

template <class ItemReader, class Items>
int getList(const HBXMessageIterator& it, Items& items, int id, int itemId) {
    using Sink = HBXReaderListDataT<ItemReader>;
    using List = HBXReaderListT<int, Sink>;
    return HBXReaderIDT<int, List>(List(Sink(), itemId, 0), id, 0)(it, items);
}

struct EnvironmentWriter : HBXPlainMarks {
    int operator()(HBXMessageIterator& it, const Environment& value) const {
        return putMembers(it, value) &&
                       good(putList<NameServerWriter>(it, value.nameServers, kNameServers, kEntry)) &&
                       good(putList<AddressWriter>(it, value.addresses, kAddresses, kEntry)) &&
                       good(putList<DiskWriter>(it, value.disks, kDisks, kDisk)) &&
                       good(putList<QoSWriter>(it, value.qoses, kQoSes, kEntry))
                   ? 0
                   : -1;
    }

private:
    static bool putMembers(HBXMessageIterator& it, const Environment& value) {
        return good(it.putValue(value.eid, kEid)) && good(it.putValue(value.parentEid, kParentEid)) &&
               good(it.putValue(value.state, kState)) && good(it.putValue(value.transition, kTransition)) &&
               good(it.putValue(value.alertType, kAlertType)) && good(it.putValue(value.version, kVersion)) &&
               good(it.putValue(value.cpuCount, kCpuCount)) &&
               good(it.putValueLongLong(value.memory, kMemory)) &&
               good(it.putValueLongLong(value.time, kTime)) && good(it.putValue(value.name, kName)) &&
               good(it.putValue(value.description, kDescription)) &&
               good(it.putValue(value.hostname, kHostName)) && good(it.putValue(value.domain, kDomain)) &&
               good(it.putValue(value.architecture, kArchitecture)) && good(it.putValue(value.data, kData));
    }
};

struct EnvironmentReader {
    int operator()(const HBXMessageIterator& it, Environment& value) const {
        return getMembers(it, value) &&
                       good(getList<NameServerReader>(it, value.nameServers, kNameServers, kEntry)) &&
                       good(getList<AddressReader>(it, value.addresses, kAddresses, kEntry)) &&
                       good(getList<DiskReader>(it, value.disks, kDisks, kDisk)) &&
                       good(getList<QoSReader>(it, value.qoses, kQoSes, kEntry))
                   ? 0
                   : -1;
    }

private:
    static bool getMembers(const HBXMessageIterator& it, Environment& value) {
        return good(it.getValue(value.eid, kEid)) && good(it.getValue(value.parentEid, kParentEid)) &&
               good(it.getValue(value.state, kState)) && good(it.getValue(value.transition, kTransition)) &&
               good(it.getValue(value.alertType, kAlertType)) && good(it.getValue(value.version, kVersion)) &&
               good(it.getValue(value.cpuCount, kCpuCount)) &&
               good(it.getValueLongLong(value.memory, kMemory)) &&
               good(it.getValueLongLong(value.time, kTime)) && good(it.getValue(value.name, kName)) &&
               good(it.getValue(value.description, kDescription)) &&
               good(it.getValue(value.hostname, kHostName)) && good(it.getValue(value.domain, kDomain)) &&
               good(it.getValue(value.architecture, kArchitecture)) && good(it.getValue(value.data, kData));
    }
};

} // namespace

int writeByHand(HBXMessageIterator& it, const Environment& value) {
    return it.putObjectInternal(EnvironmentWriter(), value);
}

int readByHand(const HBXMessageIterator& it, Environment& value) { return EnvironmentReader()(it, value); }

} // namespace HBX::bench
