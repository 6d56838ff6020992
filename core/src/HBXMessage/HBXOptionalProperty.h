#pragma once

#include <utility>

namespace HBX {

/// A value that may be unset. Readers set it only when its element was read, writers write it only when set;
/// an unset property sorts before every set one.
template <class Value>
class HBXOptionalProperty {
public:
    using value_type = Value;

    HBXOptionalProperty() = default;
    explicit HBXOptionalProperty(Value value) : value_(std::move(value)), set_(true) {}
    HBXOptionalProperty& operator=(Value value) {
        set(std::move(value));
        return *this;
    }

    /// Whether there is a value.
    [[nodiscard]] bool isSet() const { return set_; }
    /// The value; a default one while unset.
    [[nodiscard]] const Value& get() const { return value_; }
    /// Sets a value, or takes it away.
    void set(Value value) {
        value_ = std::move(value);
        set_ = true;
    }
    void reset() {
        value_ = Value();
        set_ = false;
    }

    friend bool operator==(const HBXOptionalProperty& a, const HBXOptionalProperty& b) {
        return a.set_ == b.set_ && (!a.set_ || a.value_ == b.value_);
    }
    friend bool operator<(const HBXOptionalProperty& a, const HBXOptionalProperty& b) {
        return b.set_ && (!a.set_ || a.value_ < b.value_);
    }

    /// Where the two parts lie, for the rows of a record's table.
    [[nodiscard]] constexpr const Value* valueAddress() const { return &value_; }
    [[nodiscard]] constexpr const bool* flagAddress() const { return &set_; }

private:
    Value value_{};
    bool set_ = false;
};

} // namespace HBX
