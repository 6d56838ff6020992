@0xb3c8a5d1f0e24769;
using Cxx = import "/capnp/c++.capnp";
$Cxx.namespace("HBX::bench::capnproto");

struct NameServer {
  address @0 :Text;
}

struct Address {
  ip @0 :Text;
  netmask @1 :Text;
}

struct Disk {
  name @0 :Text;
  size @1 :Int64;
}

struct QoS {
  id @0 :Text;
  limit @1 :Int64;
}

struct Environment {
  eid @0 :Text;
  parentEid @1 :Text;
  state @2 :Int32;
  transition @3 :Int32;
  alertType @4 :Int32;
  version @5 :Int32;
  cpuCount @6 :Int32;
  memory @7 :Int64;
  time @8 :Int64;
  name @9 :Text;
  description @10 :Text;
  hostname @11 :Text;
  domain @12 :Text;
  architecture @13 :Text;
  data @14 :Data;
  nameServers @15 :List(NameServer);
  addresses @16 :List(Address);
  disks @17 :List(Disk);
  qoses @18 :List(QoS);
}
