#pragma once

#include <string>
#include <utility>

namespace HBX {

/// Holds one value.
template <class Value>
class HBXProperty {
public:
    HBXProperty() = default;
    /// Holds this value.
    explicit HBXProperty(Value value) : value_(std::move(value)) {}

    /// The value; the reference is good as long as this object.
    Value& get() { return value_; }
    [[nodiscard]] const Value& get() const { return value_; }

protected:
    Value value_{};
};

/// A value with the code of the operation that a change applies with it.
template <class Value>
class HBXOperationProperty : public HBXProperty<Value> {
public:
    static constexpr int kNoOperation = -1;

    using HBXProperty<Value>::HBXProperty;

    int operation = kNoOperation;
};

/// The same with a name; the second parameter is the property that it extends.
template <class Value, class Operation = HBXOperationProperty<Value>>
class HBXNamedProperty : public Operation {
public:
    using Operation::Operation;

    std::string name;
};

} // namespace HBX
