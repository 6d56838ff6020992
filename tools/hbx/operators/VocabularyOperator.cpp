#include "VocabularyOperator.h"

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXFunctionalityCore/vocabulary/HBXVocID.h>

#include "VocItems.h"

namespace HBX::tool {

namespace {

constexpr int kVocabularies = 3465;

struct QueryArguments {
    VocTags tags;
    std::vector<HBXVocID> vocabularies; ///< only checked here: their content is walked in the message
    HBXOptionalProperty<std::string> id;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<QueryArguments>;
};

constexpr HBXRow kQueryArguments[] = {
    list<&QueryArguments::tags>(3463, 3464),
    list<&QueryArguments::vocabularies>(kVocabularies, 1871),
    member<&QueryArguments::id>(1010),
};

struct FeaturesResult {
    std::vector<VocItem> features;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<FeaturesResult>;
    using Writer = HBXTableWriter<FeaturesResult>;
};

constexpr HBXRow kFeaturesResult[] = {list<&FeaturesResult::features>(0, 3170)};

struct CategoriesResult {
    std::vector<VocItem> categories;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<CategoriesResult>;
    using Writer = HBXTableWriter<CategoriesResult>;
};

constexpr HBXRow kCategoriesResult[] = {list<&CategoriesResult::categories>(0, 1264)};

struct HasResult {
    bool found = false;
    std::vector<VocItem> feature; ///< one when found

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HasResult>;
    using Writer = HBXTableWriter<HasResult>;
};

constexpr HBXRow kHasResult[] = {
    member<&HasResult::found>(3113),
    list<&HasResult::feature>(0, 3170),
};

constinit const HBXRecordTable QueryArguments::table =
    recordTable<QueryArguments>("QueryArguments", 0, 0, kQueryArguments);
constinit const HBXRecordTable FeaturesResult::table =
    recordTable<FeaturesResult>("FeaturesResult", 0, 0, kFeaturesResult);
constinit const HBXRecordTable CategoriesResult::table =
    recordTable<CategoriesResult>("CategoriesResult", 0, 0, kCategoriesResult);
constinit const HBXRecordTable HasResult::table = recordTable<HasResult>("HasResult", 0, 0, kHasResult);

VocCursor openFor(const HBXMessageIterator& request, const VocTags& tags) {
    if (request.seek(kVocabularies) != 0) {
        return openLocalVocabulary(tags);
    }
    const MessagePointer map = adoptMessage(request.copyMessage());
    request.seekUp();
    setErrorMessage("the request carries no vocabulary");
    return openVocabulary(map, tags);
}

/// A verb out of a function from a cursor, restricted to the tags of the request, to results.
template <class Result, Outcome (*Work)(HBXVocIterator&, const QueryArguments&, Result&)>
Outcome answerFrom(const HBXMessageIterator& request, HBXMessageIterator& reply) {
    QueryArguments arguments;
    if (request.getObject(arguments, 0) != 0) {
        return RequestFailure{RequestError::BadArguments,
                              describeBadArgument(request, &arguments, QueryArguments::table)};
    }
    const VocCursor it = openFor(request, arguments.tags);
    if (!it) {
        return RequestFailure{RequestError::NoAnswer, getErrorMessage()};
    }
    Result result;
    if (Outcome failure = Work(*it, arguments, result)) {
        return failure;
    }
    if (reply.putObject(result, 0) != 0) {
        return RequestFailure{RequestError::NoAnswer, "the result cannot be written"};
    }
    return {};
}

Outcome features(HBXVocIterator& it, const QueryArguments&, FeaturesResult& result) {
    result.features = featuresOf(it);
    return {};
}

Outcome categories(HBXVocIterator& it, const QueryArguments&, CategoriesResult& result) {
    result.categories = categoriesOf(it);
    return {};
}

Outcome has(HBXVocIterator& it, const QueryArguments& arguments, HasResult& result) {
    if (!arguments.id.isSet()) {
        return RequestFailure{RequestError::BadArguments, "id is missing"};
    }
    result.found = it.seekParameter(arguments.id.get()) == 0;
    if (result.found) {
        result.feature.push_back(itemAt(it));
    }
    return {};
}

constexpr OperatorVerb kVerbs[] = {
    {3169, answerFrom<FeaturesResult, features>},
    {3461, answerFrom<CategoriesResult, categories>},
    {3462, answerFrom<HasResult, has>},
};

} // namespace

constinit const Operator kVocabularyOperator{3460, kVerbs};

} // namespace HBX::tool
