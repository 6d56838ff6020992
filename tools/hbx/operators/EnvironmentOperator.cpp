#include "EnvironmentOperator.h"

#include <optional>

#include "CacheFile.h"
#include "EnvEntry.h"

namespace HBX::tool {

namespace {

struct EidsRecord {
    std::vector<HBXEID> eids;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<EidsRecord>;
    using Writer = HBXTableWriter<EidsRecord>;
};

constexpr HBXRow kEidsRecord[] = {list<&EidsRecord::eids>(3033, 1870)};

struct EntriesResult {
    std::vector<EnvEntry> entries;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<EntriesResult>;
    using Writer = HBXTableWriter<EntriesResult>;
};

constexpr HBXRow kEntriesResult[] = {list<&EntriesResult::entries>(3426, 1008)};

struct ListArguments {
    HBXOptionalProperty<std::string> parent; ///< text, as an optional identifier that does not read is unset
    HBXOptionalProperty<std::string> type;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<ListArguments>;
};

constexpr HBXRow kListArguments[] = {
    member<&ListArguments::parent>(1866),
    member<&ListArguments::type>(3165),
};

constinit const HBXRecordTable EidsRecord::table = recordTable<EidsRecord>("EidsRecord", 0, 0, kEidsRecord);
constinit const HBXRecordTable EntriesResult::table =
    recordTable<EntriesResult>("EntriesResult", 0, 0, kEntriesResult);
constinit const HBXRecordTable ListArguments::table =
    recordTable<ListArguments>("ListArguments", 0, 0, kListArguments);

Outcome badArgument(const char* message) { return RequestFailure{RequestError::BadArguments, message}; }

/// Opens the cache and does the work; what fails there is the answer.
template <class Work>
Outcome withCache(Work work) {
    try {
        work(*requestCache());
        return {};
    } catch (const Failure& failure) {
        return RequestFailure{RequestError::CacheUnusable, failure.what()};
    }
}

Outcome get(const EidsRecord& arguments, EntriesResult& result) {
    if (arguments.eids.empty()) {
        return badArgument("eids is missing");
    }
    return withCache([&](HBXEnvCache& cache) {
        const auto list = listOf(cache);
        for (const HBXEID& eid : arguments.eids) {
            if (const auto env = list->getEnv(eid)) {
                result.entries.push_back(entryOf(*env));
            }
        }
    });
}

Outcome listAll(const ListArguments& arguments, EntriesResult& result) {
    std::optional<HBXEID> parent;
    if (arguments.parent.isSet() && parent.emplace().fromString(arguments.parent.get()) != 0) {
        return badArgument("parent_eid cannot be read");
    }
    return withCache([&](HBXEnvCache& cache) {
        const auto list = listOf(cache);
        for (const auto& env : *list) {
            if ((!parent || env->getParentEID() == *parent) &&
                (!arguments.type.isSet() || env->getType().view() == arguments.type.get())) {
                result.entries.push_back(entryOf(*env));
            }
        }
    });
}

template <int (HBXEnvCache::*Store)(const HBXEnv&)>
Outcome store(const EnvEntry& arguments, EidsRecord& result) {
    if (!arguments.env.getEID().isValid()) {
        return badArgument("eid is null");
    }
    if (arguments.type.isSet() && !isTypeName(arguments.type.get())) {
        return badArgument("env_type has 1 to 16 bytes");
    }
    return withCache([&](HBXEnvCache& cache) {
        demandSuccess(cache.getID(), (cache.*Store)(typedEnv(arguments, cache)));
        result.eids = {arguments.env.getEID()};
    });
}

Outcome remove(const EidsRecord& arguments, EidsRecord& result) {
    if (arguments.eids.empty()) {
        return badArgument("eids is missing");
    }
    return withCache([&](HBXEnvCache& cache) {
        for (const HBXEID& eid : arguments.eids) {
            if (cache.getEnvCopy(eid) != nullptr) {
                demandSuccess(cache.getID(), cache.remove(eid));
                result.eids.push_back(eid);
            }
        }
    });
}

constexpr OperatorVerb kVerbs[] = {
    {3441, answer<EidsRecord, EntriesResult, get>},
    {3443, answer<ListArguments, EntriesResult, listAll>},
    {3423, answer<EnvEntry, EidsRecord, store<&HBXEnvCache::insert>>},
    {3424, answer<EnvEntry, EidsRecord, store<&HBXEnvCache::update>>},
    {3425, answer<EidsRecord, EidsRecord, remove>},
};

} // namespace

constinit const Operator kEnvironmentOperator{3420, kVerbs};

} // namespace HBX::tool
