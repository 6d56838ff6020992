#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include <boost/smart_ptr/shared_ptr.hpp>

#include <HBXMessage/HBXRecord.h>

/// Records with a member of every kind and presence, read and written by their tables.
namespace HBX {
struct HBXPointerType;
}

namespace HBX::test {

// Argument-dependent lookup sees only the namespace of the records themselves.
using HBX::operator==;
using HBX::operator<=>;

/// A small record with marks.
struct Leaf {
    int number = 7;
    std::string text;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<Leaf>;
    using Writer = HBXTableWriter<Leaf>;
};

/// The family of shapes: Shape is its default, Blob is not registered.
struct Shape {
    virtual ~Shape() = default;
    int size = 0;

    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<Shape>;
    using Writer = HBXTableWriter<Shape>;
};

struct Circle : Shape {
    double radius = 0;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<Circle>;
    using Writer = HBXTableWriter<Circle>;
};

struct Blob : Shape {};

/// The base of the record below.
struct Stamped {
    HBXOptionalProperty<std::int64_t> stamp;
    Leaf origin;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<Stamped>;
    using Writer = HBXTableWriter<Stamped>;
};

struct Everything : Stamped {
    int number = 0;
    double real = 0;
    std::string fragment;
    Leaf leaf;
    std::uint32_t mask = 0;

    HBXOptionalProperty<int> maybeNumber;
    HBXOptionalProperty<Leaf> maybeLeaf;

    int plainNumber = 3;

    std::vector<int> numbers;
    std::set<Leaf> leafSet;
    std::set<int> bareNumbers;

    boost::shared_ptr<Shape> shape;
    std::vector<boost::shared_ptr<Shape>> shapes;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<Everything>;
    using Writer = HBXTableWriter<Everything>;
};

/// Its items are of its own kind and lie directly below it.
struct Chain {
    std::vector<Chain> links;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<Chain>;
    using Writer = HBXTableWriter<Chain>;
};

} // namespace HBX::test
