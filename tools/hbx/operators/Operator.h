#pragma once

#include <optional>
#include <span>
#include <string>
#include <utility>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX::tool {

/// What a failed request is answered with; the numbers travel in replies.
enum class RequestError {
    NoRequest = 1, ///< "data" does not hold one operator with one verb
    UnknownOperator = 2,
    UnknownVerb = 3,
    BadArguments = 4,  ///< an argument is missing, unreadable or out of range
    NoAnswer = 5,      ///< the arguments are good, but there is nothing that could be answered
    CacheUnusable = 6, ///< the environment cache cannot be opened, read or changed
};

struct RequestFailure {
    RequestError code;
    std::string message; ///< for people
};

/// Nothing: it worked.
using Outcome = std::optional<RequestFailure>;

/// One verb of an operator: reads its argument records from the element of the request that names it and
/// writes its result records into the same element of the reply.
struct OperatorVerb {
    int id; ///< element
    Outcome (*run)(const HBXMessageIterator& request, HBXMessageIterator& reply);
};

/// A module that answers requests.
struct Operator {
    int id; ///< element
    std::span<const OperatorVerb> verbs;
};

/// Which argument keeps a record from being read.
std::string describeBadArgument(const HBXMessageIterator& request, void* scratch,
                                const HBXRecordTable& table);

/// Which optional argument is there but could not be read, as one says it in a reply; "" when all could.
std::string describeUnreadArgument(const HBXMessageIterator& request, const void* arguments,
                                   const HBXRecordTable& table);

/// A verb out of a function from arguments to results.
template <class ArgumentRecord, class ResultRecord, Outcome (*Work)(const ArgumentRecord&, ResultRecord&)>
Outcome answer(const HBXMessageIterator& request, HBXMessageIterator& reply) {
    ArgumentRecord arguments;
    if (request.getObject(arguments, 0) != 0) {
        return RequestFailure{RequestError::BadArguments,
                              describeBadArgument(request, &arguments, ArgumentRecord::table)};
    }
    if (std::string unread = describeUnreadArgument(request, &arguments, ArgumentRecord::table);
        !unread.empty()) {
        return RequestFailure{RequestError::BadArguments, std::move(unread)};
    }
    ResultRecord result;
    if (Outcome failure = Work(arguments, result)) {
        return failure;
    }
    if (reply.putObject(result, 0) != 0) {
        return RequestFailure{RequestError::NoAnswer, "the result cannot be written"};
    }
    return {};
}

} // namespace HBX::tool
