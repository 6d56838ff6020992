#include "SampleRecords.h"

#include <HBXMessage/HBXDerivedParsers.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX::test {
namespace {

constexpr HBXRow kLeaf[] = {member<&Leaf::number>(1010), member<&Leaf::text>(1018)};
constexpr HBXRow kShape[] = {member<&Shape::size>(1067)};
constexpr HBXRow kCircle[] = {member<&Circle::radius>(1087)};
constexpr HBXRow kStamped[] = {member<&Stamped::stamp>(1), member<&Stamped::origin>(2)};
constexpr HBXRow kChain[] = {list<&Chain::links>(0, 5)};
constexpr HBXRow kEverything[] = {
    member<&Everything::number>(3),
    member<&Everything::real>(6),
    memberAs<&Everything::fragment>(HBXKind::Xml, 9),
    member<&Everything::leaf>(13),
    member<&Everything::mask>(42),
    member<&Everything::maybeNumber>(14),
    member<&Everything::maybeLeaf>(22),
    optional<&Everything::plainNumber>(23),
    list<&Everything::numbers>(27, 28),
    list<&Everything::leafSet>(33, 28),
    list<&Everything::bareNumbers>(0, 35),
    polymorphic<&Everything::shape>(36),
    list<&Everything::shapes>(37, 38),
};

const HBXDerivedParserFactoryT<Shape, Shape> kShapeEntry(true);
const HBXDerivedParserFactoryT<Circle, Shape> kCircleEntry(false);

} // namespace

constinit const HBXRecordTable Leaf::table = recordTable<Leaf>("Leaf", 401, 5007, kLeaf);
constinit const HBXRecordTable Shape::table = recordTable<Shape>("Shape", 292, 5009, kShape);
constinit const HBXPointerType Shape::family = familyType<Shape>();
constinit const HBXRecordTable Circle::table = recordTable<Circle, Shape>("Circle", 283, 5010, kCircle);
constinit const HBXRecordTable Stamped::table = recordTable<Stamped>("Stamped", 402, 5012, kStamped);
constinit const HBXRecordTable Everything::table =
    recordTable<Everything, Stamped>("Everything", 403, 5013, kEverything);
constinit const HBXRecordTable Chain::table = recordTable<Chain>("Chain", 0, 0, kChain);

} // namespace HBX::test
