#pragma once

#include "Environment.h"
#include "Way.h"

/// Protobuf, its messages used again. `data` is of its type bytes, so that it is not looked at.
namespace HBX::bench {

/// From the plain record into protobuf's class, to bytes, and back. Protobuf looks on both ways whether texts
/// are UTF-8; ours takes any bytes.
template <class Record>
std::unique_ptr<Way<Record>> makeProtobuf();

/// The same without that look: texts are `bytes` in its schema.
std::unique_ptr<Way<Environment>> makeProtobufUnchecked();

/// Protobuf's class is the record: to bytes and back only. The caller's record is converted once and left
/// alone.
std::unique_ptr<Way<Environment>> makeProtobufClass();

} // namespace HBX::bench
