#pragma once

#include <cstddef>
#include <memory>

namespace HBX::bench {

/// One way of taking a record to bytes and back. What it needs for that it keeps and uses again.
template <class Record>
class Way {
public:
    virtual ~Way() = default;

    /// @param out  a fresh record, filled.
    /// @return size of the encoded form in bytes, 0 on failure.
    virtual std::size_t roundTrip(const Record& in, Record& out) = 0;

    /// Whether the way gives back what went in.
    virtual bool works(const Record& in) {
        Record out;
        return roundTrip(in, out) != 0 && in == out;
    }
};

} // namespace HBX::bench
