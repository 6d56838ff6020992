#pragma once

namespace HBX {

/// What a record derives from so that pointers to it can hold derived records (HBXDerivedParsers.h): a
/// virtual destructor that leaves copying and moving as they are.
class HBXPolymorphic {
public:
    HBXPolymorphic() = default;
    virtual ~HBXPolymorphic() = default;

protected:
    HBXPolymorphic(const HBXPolymorphic&) = default;
    HBXPolymorphic(HBXPolymorphic&&) noexcept = default;
    HBXPolymorphic& operator=(const HBXPolymorphic&) = default;
    HBXPolymorphic& operator=(HBXPolymorphic&&) noexcept = default;
};

} // namespace HBX
